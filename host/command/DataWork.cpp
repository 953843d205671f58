#include "host/command/DataWork.h"

#include "host/installation/DataError.h"
#include "host/support/FileError.h"
#include "host/support/Output.h"

namespace VelkHost {

ExitCode runOnData(Output& output, const std::function<ExitCode()>& work)
{
    try {
        return work();
    } catch (const DataError& error) {
        output.error(error.what(), error.advice());
    } catch (const FileError& error) {
        output.error(error.what());
    }
    return ExitCode::DataFailed;
}

}  // namespace VelkHost
