#include "soak/hand.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    using namespace orvelle::test;
    QCoreApplication application(argc, argv);
    // Answers are read by somebody who waits for them.
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    constexpr struct {
        const char *name;
        int (*run)();
    } roles[] = {{"menu", runMenuHand}, {"clipboard", runClipboardHand}, {"logind", runLogindHand}};
    for (const auto &role : roles) {
        if (argc == 2 && qstrcmp(argv[1], role.name) == 0)
            return role.run();
    }
    std::fputs("usage: soak_hand menu|clipboard|logind\n", stderr);
    return 2;
}
