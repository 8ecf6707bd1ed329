#include "main/show.h"
#include "main/streams.h"

#ifdef NDEBUG
#error "Assertions are how the show reports what it cannot survive: they stay in every build."
#endif

int main(int argc, char** argv) {
    streams_secure();
    return start_show(argc, argv);
}
