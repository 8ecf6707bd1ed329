// Takes the place of GL's functions that numbers go through, and looks at every one of them.
#pragma once

// Numbers so far that were none, or infinite: in uniforms, and in the vertices that were drawn.
long glwatch_uniforms();
long glwatch_vertices();

// Draws so far from buffers, which cannot be looked into.
long glwatch_buffers();
