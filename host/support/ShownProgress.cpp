#include "host/support/ShownProgress.h"

#include "host/support/System.h"

#include <VelkCommon/Text/StringConvert.h>

#include <utility>

namespace VelkHost {
namespace {

constexpr std::uint64_t wholeRange = 100;

}  // namespace

ShownProgress::ShownProgress(Output& output, Cancel cancel) : line_(output), cancel_(cancel)
{
    watchInterrupts();
    line_.begin(wholeRange);
    setObserver(this);
}

ShownProgress::~ShownProgress()
{
    setObserver(nullptr);
}

void ShownProgress::increment(std::u32string mainLabel, std::u32string secondaryLabel)
{
    if (cancel_ == Cancel::thrown && isCancelled())
        throw Interrupted();
    ProgressSubject::increment(std::move(mainLabel), std::move(secondaryLabel));
}

bool ShownProgress::isCancelled() const
{
    return interrupted() || ProgressSubject::isCancelled();
}

void ShownProgress::progressChanged(const State& state)
{
    line_.setText(StringConvert::toStdUtf8String(state.mainLabel));
    line_.setValue(static_cast<std::uint64_t>(state.position));
}

}  // namespace VelkHost
