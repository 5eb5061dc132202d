#include "core/start_up.h"

int main(int argc, char** argv)
{
    return jotlet::RunProgram(argc, argv);
}
