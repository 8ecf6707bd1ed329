#include "stage.h"

glm::mat4 phone_rotation_mv(1.0f);
glm::mat4 phone_projection(1.0f);
spring_c<glm::vec3> tunnelflyer;
fbo_c* orangetex_fbo = nullptr;
fbo_c* orange_fbo = nullptr;
fbo_c* scrollertex_fbo = nullptr;
texture_c screenshottex;
texture_c nysitex;
float sf_zchange = 0.0f;
float camPitch = 0.0f;
float camYaw = 0.0f;
