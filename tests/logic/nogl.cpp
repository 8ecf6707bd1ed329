// GL that does nothing: all succeeds, nothing is drawn, nothing is recorded.
#include <GLES2/gl2.h>

extern "C" {

void glActiveTexture(GLenum) {}
void glAttachShader(GLuint, GLuint) {}
void glBindFramebuffer(GLenum, GLuint) {}
void glBindTexture(GLenum, GLuint) {}
void glBlendFunc(GLenum, GLenum) {}
GLenum glCheckFramebufferStatus(GLenum) {
    return GL_FRAMEBUFFER_COMPLETE;
}
void glClear(GLbitfield) {}
void glClearColor(GLfloat, GLfloat, GLfloat, GLfloat) {}
void glCompileShader(GLuint) {}
GLuint glCreateProgram() {
    return 1;
}
GLuint glCreateShader(GLenum) {
    return 1;
}
void glDepthFunc(GLenum) {}
void glDepthMask(GLboolean) {}
void glDisable(GLenum) {}
void glDisableVertexAttribArray(GLuint) {}
void glDrawArrays(GLenum, GLint, GLsizei) {}
void glDrawElements(GLenum, GLsizei, GLenum, const void*) {}
void glEnable(GLenum) {}
void glEnableVertexAttribArray(GLuint) {}
void glFramebufferTexture2D(GLenum, GLenum, GLenum, GLuint, GLint) {}
void glGenFramebuffers(GLsizei, GLuint*) {}
void glGenTextures(GLsizei, GLuint*) {}
void glGenerateMipmap(GLenum) {}
GLint glGetAttribLocation(GLuint, const GLchar*) {
    return 0;
}
void glGetFloatv(GLenum, GLfloat*) {}
void glGetIntegerv(GLenum, GLint* value) {
    *value = 16;
}
void glGetProgramiv(GLuint, GLenum, GLint* value) {
    *value = 1;
}
void glGetShaderInfoLog(GLuint, GLsizei, GLsizei*, GLchar*) {}
void glGetShaderiv(GLuint, GLenum, GLint* value) {
    *value = 1;
}
const GLubyte* glGetString(GLenum) {
    return reinterpret_cast<const GLubyte*>("GL_OES_element_index_uint");
}
GLint glGetUniformLocation(GLuint, const GLchar*) {
    return 0;
}
void glLinkProgram(GLuint) {}
void glReadPixels(GLint, GLint, GLsizei, GLsizei, GLenum, GLenum, void*) {}
void glScissor(GLint, GLint, GLsizei, GLsizei) {}
void glShaderSource(GLuint, GLsizei, const GLchar* const*, const GLint*) {}
void glStencilFunc(GLenum, GLint, GLuint) {}
void glStencilMask(GLuint) {}
void glStencilOp(GLenum, GLenum, GLenum) {}
void glTexImage2D(GLenum, GLint, GLint, GLsizei, GLsizei, GLint, GLenum, GLenum, const void*) {}
void glTexParameterf(GLenum, GLenum, GLfloat) {}
void glTexParameteri(GLenum, GLenum, GLint) {}
void glTexSubImage2D(GLenum, GLint, GLint, GLint, GLsizei, GLsizei, GLenum, GLenum, const void*) {}
void glUniform1f(GLint, GLfloat) {}
void glUniform1i(GLint, GLint) {}
void glUniform2f(GLint, GLfloat, GLfloat) {}
void glUniform3f(GLint, GLfloat, GLfloat, GLfloat) {}
void glUniformMatrix3fv(GLint, GLsizei, GLboolean, const GLfloat*) {}
void glUniformMatrix4fv(GLint, GLsizei, GLboolean, const GLfloat*) {}
void glUseProgram(GLuint) {}
void glVertexAttribPointer(GLuint, GLint, GLenum, GLboolean, GLsizei, const void*) {}
void glViewport(GLint, GLint, GLsizei, GLsizei) {}
}
