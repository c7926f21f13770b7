#include <QVBoxLayout>

#include "desktop/layouts.h"
#include "desktop/views.h"

namespace zenvora::desktop {

QWidget* PathView(frame::frmPath& form, Binder& bind, QWidget* parent) {
    auto* const window = NewDialog(parent);
    auto* const layout = new QVBoxLayout(window);
    QComboBox* const drive = bind.Bind(form.drvDrive);
    layout->addWidget(bind.Bind(form.Label1, *drive));
    layout->addWidget(drive);
    QListView* const folders = Wide(bind.Bind(form.dirPath), 44);
    folders->setMinimumHeight(10 * folders->fontMetrics().lineSpacing());
    layout->addWidget(bind.Bind(form.Label2, *folders));
    layout->addWidget(folders, 1);
    QLineEdit* const chosen = bind.Bind(form.txtFilename);
    Binder::Name(*chosen, "Chosen folder");
    layout->addWidget(chosen);
    layout->addLayout(Row({nullptr, bind.Bind(form.cmdOk), bind.Bind(form.cmdCancel)}));
    return window;
}

}  // namespace zenvora::desktop
