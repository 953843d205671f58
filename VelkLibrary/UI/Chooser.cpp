#include <VelkLibrary/UI/Chooser.h>

#include <VelkLibrary/detail/ModuleStatics.h>

#include <memory>
#include <mutex>
#include <utility>

namespace Library {
namespace {

// Guarded by the chooser's mutex, except at the end of the process.
std::unique_ptr<Chooser>& heldChooser()
{
    static std::unique_ptr<Chooser> chooser;
    return chooser;
}

}  // namespace

Chooser& Chooser::get()
{
    const std::lock_guard lock(detail::chooserMutex);
    std::unique_ptr<Chooser>& held = heldChooser();
    if (!held)
        held.reset(new Chooser);
    return *held;
}

void Chooser::cleanup()
{
    const std::lock_guard lock(detail::chooserMutex);
    const std::unique_ptr<Chooser> last = std::move(heldChooser());
}

Chooser::Chooser() = default;
Chooser::~Chooser() = default;

void Chooser::setData(const TreeItemData& item)
{
    chosen_ = item;
}

TreeItemData Chooser::getData() const
{
    return chosen_;
}

void Chooser::clearData()
{
    setData(TreeItemData());
}

}  // namespace Library
