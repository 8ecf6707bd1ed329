// Files that are written beside their place and take it when they are whole.
#pragma once

#include <string>

// "show.mp4" is written to "show.part.mp4".
std::string aside_name(const std::string& filename);

// Whether there can be such a file: tries it, and leaves nothing behind.
bool aside_writable(const std::string& filename);

// Puts the file that was written aside in its place. Returns false when that cannot be.
bool aside_replace(const std::string& filename);
