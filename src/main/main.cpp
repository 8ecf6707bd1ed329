#include "main/startup.h"
#include "main/streams.h"

int main(int argc, char** argv) {
    streams_secure();
    return start_show(argc, argv);
}
