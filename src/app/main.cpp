#include "app/Launcher.h"

int main(int argc, char **argv)
{
    return orvelle::launch(argc, argv);
}
