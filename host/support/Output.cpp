#include "host/support/Output.h"

#include "host/support/DisplayText.h"
#include "host/support/System.h"

#include <QByteArray>

namespace VelkHost {

Output::Output()
{
    if (!outputIsTerminal())
        return;
    columns_ = terminalColumns();
    styles_ = qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb";
}

void Output::write(std::string_view text)
{
    if (readerGone_ || failed_)
        return;
    const WriteResult result = writeToOutput(text);
    readerGone_ = result == WriteResult::ReaderGone;
    failed_ = result == WriteResult::Failed;
}

void Output::error(std::string_view text, std::string_view advice) const
{
    std::string lines = "velk: " + printableUtf8(text) + "\n";
    if (!advice.empty())
        lines.append(advice).append("\n");
    writeToError(lines);
}

}  // namespace VelkHost
