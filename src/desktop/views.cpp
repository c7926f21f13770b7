#include "desktop/views.h"

namespace zenvora::desktop {

void RegisterViews(QtDesktop& screen) {
    screen.Register("frmMain", MainView);
    screen.Register("frmSplash1", SplashView);
    screen.Register("frmOverwrite", OverwriteView);
    screen.Register("frmConfig", ConfigView);
    screen.Register("frmPath", PathView);
    screen.Register("frmAbout", AboutView);
    screen.Register("frmDataViewer", DataViewerView);
}

}  // namespace zenvora::desktop
