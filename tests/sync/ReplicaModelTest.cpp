#include "ReplicaModel.h"

#include "support/LogCapture.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

/// Leaves out steps as long as something goes wrong without them.
std::vector<ModelStep> shrunk(quint32 seed, std::vector<ModelStep> steps)
{
    for (std::size_t part = steps.size() / 2; part > 0; part /= 2) {
        for (std::size_t at = 0; at + part <= steps.size();) {
            std::vector<ModelStep> fewer = steps;
            const auto from = fewer.begin() + static_cast<std::ptrdiff_t>(at);
            fewer.erase(from, from + static_cast<std::ptrdiff_t>(part));
            if (runModel(seed, fewer).isEmpty())
                at += part;
            else
                steps = std::move(fewer);
        }
    }
    return steps;
}

/// ORVELLE_MODEL_SEEDS is how many runs are made, ORVELLE_MODEL_FIRST_SEED with
/// which number they begin.
TEST(ReplicaModel, MachinesConvergeAndLoseNothing)
{
    const int count = qEnvironmentVariableIntValue("ORVELLE_MODEL_SEEDS");
    const int first = qEnvironmentVariableIntValue("ORVELLE_MODEL_FIRST_SEED");
    const LogCapture quiet;
    for (int seed = first; seed < first + (count > 0 ? count : 25); ++seed) {
        const auto number = static_cast<quint32>(seed);
        const auto steps = randomSteps(number);
        const QString fault = runModel(number, steps);
        if (fault.isEmpty())
            continue;
        const auto few = shrunk(number, steps);
        QStringList lines;
        for (const ModelStep &step : few)
            lines += describe(step);
        ADD_FAILURE() << "seed " << seed << ": " << fault.toStdString()
                      << "\nwith the fewest steps: " << runModel(number, few).toStdString() << '\n'
                      << lines.join(u'\n').toStdString();
        return;
    }
}

} // namespace
} // namespace orvelle::test
