#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <memory>

#include "desktop/binder.h"
#include "desktop/event_watch.h"
#include "desktop/list_model.h"
#include "desktop/quiet.h"
#include "desktop/strings.h"

namespace zenvora::desktop {

using controls::Property;

namespace {

void ShowItems(QComboBox& box, const controls::ComboBox& control) {
    const QSignalBlocker quiet(box);
    // A list grows at its end or is emptied: what stands there already stays, however long it is.
    if (control.ListCount() < box.count()) box.clear();
    for (int index = box.count(); index < control.ListCount(); ++index)
        box.addItem(Shown(control.List(index)));
}

void ShowChosen(QComboBox& box, const controls::ComboBox& control) {
    const QSignalBlocker quiet(box);
    QLineEdit* const edit = box.lineEdit();
    const QString before = box.currentText();
    const int caret = edit == nullptr ? 0 : edit->cursorPosition();
    if (box.currentIndex() != control.ListIndex()) box.setCurrentIndex(control.ListIndex());
    if (edit == nullptr) return;
    const QString text = Shown(control.Text());
    if (box.currentText() != text) box.setEditText(text);
    if (before == text) edit->setCursorPosition(caret);
}

}  // namespace

QComboBox* Binder::Bind(controls::ComboBox& control) {
    auto* const box = new QComboBox;
    box->setEditable(!control.PickOnly());
    box->setInsertPolicy(QComboBox::NoInsert);
    // What is typed stays as it is typed.
    if (box->isEditable()) box->setCompleter(nullptr);
    box->setFocusPolicy(Qt::StrongFocus);
    if (box->lineEdit() != nullptr && form_.TakesFiles()) box->lineEdit()->setAcceptDrops(false);
    // The wheel scrolls the dialog over a box that nobody works in; it must not change a value there.
    auto* const watch = new EventWatch(box, [box](QEvent& event) {
        if (event.type() != QEvent::Wheel || box->hasFocus()) return false;
        event.ignore();
        return true;
    });
    box->installEventFilter(watch);
    const auto show = [box, &control](Property property) {
        if (property == Property::Items) ShowItems(*box, control);
        if (property == Property::Items || property == Property::Text) ShowChosen(*box, control);
        if (property == Property::Selection && box->lineEdit() != nullptr) box->lineEdit()->selectAll();
    };
    Attach(control, *box, show);
    show(Property::Items);
    const auto typed = [this, box, &control](const QString& text) {
        if (text == Shown(control.Text())) return;
        User([&] { control.SetText(Stored(text)); });
        if (attached_) ShowChosen(*box, control);
    };
    if (!control.PickOnly()) connect(box, &QComboBox::editTextChanged, context_, typed);
    connect(box, &QComboBox::activated, context_, [this, box, &control](int index) {
        User([&] { control.Pick(index); });
        if (attached_) ShowChosen(*box, control);
    });
    return box;
}

QListView* Binder::Bind(controls::ListControl& control) {
    auto* const view = new QListView;
    auto* const model = new ListModel(control, view);
    partings_.emplace_back([model] { model->Drop(); });
    view->setModel(model);
    view->setUniformItemSizes(true);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto* const box = dynamic_cast<controls::ListBox*>(&control);
    const bool several = box != nullptr && box->MultiSelect();
    view->setSelectionMode(several ? QAbstractItemView::ExtendedSelection
                                   : QAbstractItemView::SingleSelection);
    const auto showing = std::make_shared<bool>(false);
    const auto showSelection = [view, model, box, showing] {
        if (box == nullptr) return;
        const Quiet quiet(*showing);
        QItemSelection selection;
        QModelIndex last;
        for (int row = 0; row < model->rowCount(); ++row) {
            if (!box->Selected(row)) continue;
            last = model->index(row);
            selection.select(last, last);
        }
        view->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
        if (last.isValid() && !view->selectionModel()->isSelected(view->currentIndex())) {
            view->selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);
            view->scrollTo(last);
        }
    };
    const auto show = [model, showing, showSelection](Property property) {
        const Quiet quiet(*showing);
        if (property == Property::Items) model->Refresh();
        if (property == Property::Items || property == Property::Selection) showSelection();
    };
    Attach(control, *view, show);
    showSelection();
    if (box == nullptr) return view;

    connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, context_,
            [this, view, box, showing, showSelection](const QItemSelection& on, const QItemSelection& off) {
                if (*showing) return;
                // What was unselected first, so that the rule sees no more than the user does.
                User([&] {
                    if (!box->MultiSelect()) {
                        const QModelIndexList rows = view->selectionModel()->selectedIndexes();
                        return box->SetListIndex(rows.isEmpty() ? -1 : rows.constFirst().row());
                    }
                    for (const QModelIndex& index : off.indexes())
                        box->SetSelected(index.row(), false);
                    for (const QModelIndex& index : on.indexes())
                        box->SetSelected(index.row(), true);
                });
                if (attached_) showSelection();
            });
    const auto pressed = [this, box] { User([box] { box->DblClick(); }); };
    connect(view, &QListView::doubleClicked, context_, pressed);
    auto* const watch = new EventWatch(view, [this, box, pressed](QEvent& event) {
        if (event.type() != QEvent::KeyPress || !attached_ || !box->HasDblClickRule()) return false;
        const int key = static_cast<const QKeyEvent&>(event).key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
        pressed();
        return true;
    });
    view->installEventFilter(watch);
    return view;
}

}  // namespace zenvora::desktop
