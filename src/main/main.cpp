#include "main/startup.h"

int main(int argc, char** argv) {
    return start_show(argc, argv);
}
