#include "app/Launcher.h"
#include "platform/freedesktop/FrugalHeap.h"
#include "platform/freedesktop/NoCoreFile.h"

int main(int argc, char **argv)
{
    orvelle::leaveNoCoreFile();
    orvelle::keepHeapFrugal();
    return orvelle::launch(argc, argv);
}
