#include "common/processes.h"

#include <algorithm>

#include "common/primitives.h"

namespace zenvora::common {

void FillProcessList(Session& session, controls::ListBox& lstProcesses) {
    std::vector<std::string> names = session.machine.ProcessNames();
    for (std::string& name : names)
        name.resize(std::min(name.size(), name.find('\0')));
    lstProcesses.AddItems(std::move(names));
}

bool IsKrnRunning(Session& session, controls::ListBox& lstProcesses) {
    FillProcessList(session, lstProcesses);
    for (int index = 0; index < lstProcesses.ListCount(); ++index) {
        if (UpTrim(lstProcesses.List(index)) == "KRN.EXE") return true;
    }
    return false;
}

}  // namespace zenvora::common
