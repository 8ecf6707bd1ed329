#include "3dphone.h"

#include "effects.h"

glm::mat4 phone_rotation_mv(1.0f);
glm::mat4 phone_projection(1.0f);
GLuint phonescreentex = 0;
texture_c nysitex;
bool show_whiteback = false;
bool flyphone_tunnelready = false;
void (*draw_the_phone_ptr)(bool stencil) = nullptr;

namespace {

class effect_c : public demoeffect_c {};

effect_c effect;

} // namespace

demoeffect_c* flyphone = &effect;

void phonedraw() {}
