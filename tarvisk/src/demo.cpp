#include "demo.h"

#include "effects.h"
#include "main/capture.h"
#include "main/clock.h"
#include "main/startup.h"

spring_c<glm::vec3> tunnelflyer;
fbo_c* orangetex_fbo = nullptr;
fbo_c* orange_fbo = nullptr;
fbo_c* scrollertex_fbo = nullptr;
texture_c screenshottex;
GLuint orangetex = 0;
bool die = false;

void demo_config() {
    config_stencilsize = 8;
}

void demo_init() {}

void demo_initgl() {
    screenshottex.fromsurface(screenshot_surface);
}

void demo_run() {
    for (;;)
        system_crap();
}
