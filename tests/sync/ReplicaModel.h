#pragma once

#include <QString>

#include <vector>

namespace orvelle::test {

/// One thing that happens in the world. Its `seed` decides all that is random
/// about it, so that a run without some of the steps does the others alike.
struct ModelStep {
    enum class Kind {
        Add,
        Rename,
        Rewrite,
        Move,
        Delete,
        Reorder,
        Undo,
        SaveByHand,
        Offline,
        Online,
        Hold,
        Deliver,
        TellAgain,
        OldVersion,
        Restart,
        DebugMode,
        Wake,
        Wait,
        Set,
        Encrypt,
        Decrypt,
        ForgetPassphrase,
    };
    Kind kind = Kind::Wait;
    int machine = 0;
    quint32 seed = 0;
};
QString describe(const ModelStep &step);
std::vector<ModelStep> randomSteps(quint32 seed);

/// Five machines over one place, from the steps that `seed` gives or some of
/// them. The answer is what went wrong; empty when nothing did.
QString runModel(quint32 seed, const std::vector<ModelStep> &steps);

} // namespace orvelle::test
