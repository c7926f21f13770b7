#include "desktop/views.h"

#include "desktop/frm_edit_view.h"
#include "desktop/frm_pick_date_view.h"
#include "desktop/frm_text_view.h"

namespace zenvora::desktop {

void RegisterViews(QtDesktop& screen) {
    screen.Register("frmMain", MainView);
    screen.Register("frmSplash1", SplashView);
    screen.Register("frmOverwrite", OverwriteView);
    screen.Register("frmEdit", FrmEditView);
    screen.Register("frmPickDate", FrmPickDateView);
    screen.Register("frmConfig", ConfigView);
    screen.Register("frmPath", PathView);
    screen.Register("frmAbout", AboutView);
    screen.Register("frmText", FrmTextView);
    screen.Register("frmCSVWizard", WizardView);
    screen.Register("frmMergeDBs", MergeView);
    screen.Register("frmDataViewer", DataViewerView);
}

}  // namespace zenvora::desktop
