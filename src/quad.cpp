#include "quad.h"

namespace quad {

const glm::vec2 unit[6] = {{0, 0}, {1, 0}, {0, 1}, {1, 0}, {1, 1}, {0, 1}};

void attach(const shader_c& shader, const glm::vec2* pos, const glm::vec2* uv) {
    shader.array("pos", 2, GL_FLOAT, sizeof(glm::vec2), pos);
    if (uv)
        shader.array("uv", 2, GL_FLOAT, sizeof(glm::vec2), uv);
}

void detach(const shader_c& shader) {
    shader.array("pos", 2, GL_FLOAT, 0, nullptr);
    shader.array("uv", 2, GL_FLOAT, 0, nullptr);
}

void draw(const shader_c& shader) {
    attach(shader, unit, shader.attrib("uv") >= 0 ? unit : nullptr);
    glDrawArrays(GL_TRIANGLES, 0, 6);
    detach(shader);
}

void blendon() {
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

void blendoff() {
    glDisable(GL_BLEND);
}

void drawblended(const shader_c& shader) {
    blendon();
    draw(shader);
    blendoff();
}

} // namespace quad
