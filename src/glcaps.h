// What a few effects need from the GL context beyond the core of ES 2.0. An effect asks in its
// initgl; where something is missing, the answer is false and a line on standard error says which
// effect cannot draw and why. Nothing is printed when it is there. GL thread, context current.
#pragma once

#include <GLES2/gl2.h>

// What GL says of itself; empty where it says nothing.
const char* glcaps_string(GLenum name);

// 32-bit element indices.
bool glcaps_index32(const char* effect);

// Texture reads in the vertex shader. Without them such a program does not even link.
bool glcaps_vertextextures(const char* effect);

// Points of up to `pixels` in diameter. Where GL has less, it draws larger ones at its own limit.
bool glcaps_pointsize(const char* effect, float pixels);
