#include "support/window_test.h"

int main(int argc, char** argv)
{
    return jotlet::RunWindowTests(argc, argv);
}
