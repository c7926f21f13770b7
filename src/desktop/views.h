#pragma once

#include "analysis/frm_data_viewer.h"
#include "desktop/binder.h"
#include "desktop/qt_desktop.h"
#include "frame/frm_about.h"
#include "frame/frm_config.h"
#include "frame/frm_main.h"
#include "frame/frm_overwrite.h"
#include "frame/frm_path.h"
#include "frame/frm_splash1.h"
#include "import/csv_wizard.h"
#include "import/frm_merge_dbs.h"

/// The windows: each lays out its form's controls and decides nothing.
namespace zenvora::desktop {

[[nodiscard]] QWidget* MainView(frame::frmMain& form, Binder& bind, QWidget* parent);
[[nodiscard]] QWidget* SplashView(frame::frmSplash1& form, Binder& bind, QWidget* parent);
[[nodiscard]] QWidget* OverwriteView(frame::frmOverwrite& form, Binder& bind, QWidget* parent);
[[nodiscard]] QWidget* ConfigView(frame::frmConfig& form, Binder& bind, QWidget* parent);
[[nodiscard]] QWidget* PathView(frame::frmPath& form, Binder& bind, QWidget* parent);
[[nodiscard]] QWidget* AboutView(frame::frmAbout& form, Binder& bind, QWidget* parent);
[[nodiscard]] QWidget* WizardView(importing::frmCSVWizard& form, Binder& bind, QWidget* parent);
[[nodiscard]] QWidget* MergeView(importing::frmMergeDBs& form, Binder& bind, QWidget* parent);
[[nodiscard]] QWidget* DataViewerView(analysis::frmDataViewer& form, Binder& bind, QWidget* parent);

/// Gives the screen the views of all forms of the program.
void RegisterViews(QtDesktop& screen);

}  // namespace zenvora::desktop
