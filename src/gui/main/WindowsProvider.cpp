#include "component/Designer.h"
#include "gui/main/DesignerWindow.h"
#include "gui/main/MainWindow.h"

#include "component/Tabulor.h"

#include <QApplication>

namespace tabulor {

namespace {

// Opens designer windows for components; registered as the windows' objects are loaded.
class WindowsProvider final : public DesignerProvider
{
public:
    WindowsProvider() { setDesignerProvider(this); }
    ~WindowsProvider() override
    {
        if (designerProvider() == this)
            setDesignerProvider(nullptr);
    }

    void ensureApplication() override
    {
        if (QCoreApplication::instance())
            return;
        // A host without an application of its own gets one for the life of the process, on
        // the display if there is one.
        static int argc = 1;
        static char name[] = "tabulor";
        static char* argv[] = {name, nullptr};
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") &&
            qEnvironmentVariableIsEmpty("DISPLAY") &&
            qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        new QApplication(argc, argv);
    }

    std::unique_ptr<Designer> create(Tabulor& component) override
    {
        return std::make_unique<DesignerWindow>(component.session());
    }
};

const WindowsProvider g_provider;

} // namespace

} // namespace tabulor
