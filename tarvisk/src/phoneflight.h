// The way the phone flies in the first scene, from cue to cue, until the camera has gone through
// its screen.
#pragma once

// Set by the flight, read by the director: the phone lies on white and shows the city; the camera
// has gone through the screen.
extern bool show_whiteback;
extern bool flyphone_tunnelready;

// One frame of it: events and the viewer's hand choose the target, springs move by the frame's
// ticks, and phone_rotation_mv and phone_projection are set.
void phoneflight_move();
