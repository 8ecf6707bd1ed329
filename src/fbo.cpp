#include "fbo.h"

#include <cstdio>

namespace {

void report_status() {
    switch (glCheckFramebufferStatus(GL_FRAMEBUFFER)) {
    case GL_FRAMEBUFFER_COMPLETE:
        fprintf(stderr, "fbo ok!\n");
        break;
    case GL_FRAMEBUFFER_UNSUPPORTED:
        fprintf(stderr, "fbo unsup!\n");
        break;
    default:
        fprintf(stderr, "fbo problem!\n");
    }
}

} // namespace

fbo_c::fbo_c(int width, int height, int flags) : viewport_p{} {
    glGenFramebuffers(1, &fbohandle);
    glGenTextures(1, &colortex);
    glBindFramebuffer(GL_FRAMEBUFFER, fbohandle);
    glBindTexture(GL_TEXTURE_2D, colortex);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    const GLfloat wrap = flags & FBO_CLAMP ? GL_CLAMP_TO_EDGE : GL_REPEAT;
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrap);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrap);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, colortex, 0);
    report_status();
    width_p = width;
    height_p = height;
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

void fbo_c::bind() {
    glBindFramebuffer(GL_FRAMEBUFFER, fbohandle);
    glGetIntegerv(GL_VIEWPORT, viewport_p);
    glViewport(0, 0, width_p, height_p);
}

void fbo_c::unbind() const {
    glViewport(viewport_p[0], viewport_p[1], viewport_p[2], viewport_p[3]);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

void fbo_c::discard() {}
