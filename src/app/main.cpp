#include "app/Launcher.h"
#include "platform/freedesktop/NoCoreFile.h"

int main(int argc, char **argv)
{
    orvelle::leaveNoCoreFile();
    return orvelle::launch(argc, argv);
}
