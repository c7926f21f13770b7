#include "desktop/frm_edit_view.h"

#include <QAbstractButton>
#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/field_notes.h"

namespace zenvora::desktop {
namespace {

constexpr int kPictureHeight = 18;
constexpr int kWidestDate = 12;  // characters, and the sign behind them

/// Lays the editor out.
class EditView {
  public:
    EditView(records::frmEdit& form, Binder& bind, QWidget* parent)
        : form_(form), bind_(bind), window_(new QDialog(parent)), notes_(new FieldNotes(*window_)) {}

    QWidget* LayOut() {
        auto* const rows = new QVBoxLayout(window_);
        rows->addLayout(BaseDate());
        rows->addWidget(Address());
        QTextBrowser* const panel = bind_.Bind(form_.rtxtInfo);
        Binder::Name(*panel, "Help on the field");
        // As high as the longest of the help texts.
        constexpr int kLinesOfHelp = 16;
        panel->setMinimumHeight(kLinesOfHelp * panel->fontMetrics().lineSpacing());
        rows->addWidget(panel, 1);
        rows->addWidget(Entries());
        rows->addWidget(notes_->Line());
        rows->addLayout(Buttons());
        return window_;
    }

  private:
    QLayout* BaseDate() {
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        QLineEdit* const edit = bind_.Bind(form_.txtBaseDate);
        row->addWidget(bind_.Bind(form_.Label3, *edit));
        row->addWidget(edit);
        row->addWidget(Calendar(form_.imaBaseDateCal, *edit));
        edit->setFixedWidth(WidthOf(*edit, kWidestDate));
        notes_->Follow(form_.txtBaseDate, *edit, "Effective Appraisal Date", kCalendarHint);
        return row;
    }

    QWidget* Address() {
        QGroupBox* const group = bind_.Bind(form_.Frame3);
        auto* const grid = new QGridLayout(group);
        int column = 0;
        const auto add = [&](controls::Label& label, controls::TextBox& field, int stretch) {
            QLineEdit* const edit = bind_.Bind(field);
            grid->addWidget(bind_.Bind(label, *edit), 0, column);
            grid->addWidget(edit, 1, column);
            grid->setColumnStretch(column++, stretch);
            notes_->Follow(field, *edit, controls::PlainCaption(label.Caption()));
            return edit;
        };
        add(form_.lblStreet, form_.txtStreet, 10);
        add(form_.lblCity, form_.txtCity, 6);
        if (form_.cboCity.Visible()) {
            QComboBox* const places = bind_.Bind(form_.cboCity);
            // Not as wide as the widest of the places: there may be very many to measure.
            places->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
            places->setMinimumContentsLength(kWidestDate);
            Binder::Name(*places, "Known places");
            grid->addWidget(places, 1, column);
            grid->setColumnStretch(column++, 4);
        }
        QLineEdit* const state = add(form_.lblState, form_.txtState, 0);
        state->setFixedWidth(WidthOf(*state, 6));
        QLineEdit* const zip = add(form_.lblZip, form_.txtZip, 0);
        zip->setFixedWidth(WidthOf(*zip, kWidestDate));
        return group;
    }

    QWidget* Entries() {
        QGroupBox* const frame = bind_.Bind(form_.fraNonAddrFields1);
        auto* const groups = new QHBoxLayout(frame);
        using Rows = std::vector<Row>;
        groups->addWidget(Group(
            form_.Frame4,
            Rows{{form_.lblOrigListDate, form_.txtOrigListDate, "Original List Date", &form_.imaOrigListDate},
                 {form_.lblOrigListPrice, form_.txtOrigListPrice, "Original List Price", nullptr}}));
        groups->addWidget(Group(form_.Frame5, Rows{{form_.lblCurrentListDate, form_.txtCurrListDate,
                                                    "Current List Date", &form_.imaCurrListDate},
                                                   {form_.lblCurrentListPrice, form_.txtCurrListPrice,
                                                    "Current List Price", nullptr}}));
        groups->addWidget(Group(form_.Frame6, Rows{{form_.lblContractDate, form_.txtContractDate,
                                                    "Contract Date", &form_.imaContractDate},
                                                   {form_.lblListCancelDate, form_.txtListCancelDate,
                                                    "Listing Cancel Date", &form_.imaListCancelDate}}));
        groups->addWidget(
            Group(form_.Frame2, Rows{{form_.lblSaleDate, form_.txtSaleDate, "Sale Date", &form_.imaSaleDate},
                                     {form_.lblSalePrice, form_.txtSellingPr, "Sale Price", nullptr}}));
        return frame;
    }

    struct Row {
        controls::Label& label;
        controls::TextBox& field;
        const char* title;
        controls::Image* calendar;  ///< null: a price
    };

    QWidget* Group(controls::Frame& frame, const std::vector<Row>& rows) {
        QGroupBox* const group = bind_.Bind(frame);
        auto* const grid = new QGridLayout(group);
        int at = 0;
        for (const Row& row : rows) {
            QLineEdit* const edit = bind_.Bind(row.field);
            edit->setMinimumWidth(WidthOf(*edit, kWidestDate));
            grid->addWidget(bind_.Bind(row.label, *edit), at, 0);
            grid->addWidget(edit, at, 1);
            if (row.calendar != nullptr) {
                grid->addWidget(Calendar(*row.calendar, *edit), at, 2);
            } else {
                edit->setAlignment(Qt::AlignRight);
            }
            Binder::Name(*edit, row.title);
            notes_->Follow(row.field, *edit, row.title, row.calendar == nullptr ? "" : kCalendarHint);
            ++at;
        }
        grid->setColumnStretch(1, 1);
        return group;
    }

    /// The button of a calendar. It does not take the focus, so that the field is not left by it; the keys do
    /// the same from within the field.
    QWidget* Calendar(controls::Image& image, QLineEdit& edit) {
        QWidget* const picture = bind_.Bind(image, kPictureHeight);
        auto* const button = qobject_cast<QAbstractButton*>(picture);
        if (button == nullptr) return picture;
        button->setFocusPolicy(Qt::NoFocus);
        for (const QKeySequence& keys : {QKeySequence(Qt::Key_F4), QKeySequence(Qt::ALT | Qt::Key_Down)}) {
            auto* const shortcut = new QShortcut(keys, &edit);
            shortcut->setContext(Qt::WidgetShortcut);
            QObject::connect(shortcut, &QShortcut::activated, button, [button] { button->click(); });
        }
        return picture;
    }

    QLayout* Buttons() {
        auto* const row = new QHBoxLayout;
        row->addWidget(bind_.Bind(form_.cmdUseOrig));
        row->addStretch(1);
        row->addWidget(bind_.Bind(form_.cmdCancel));
        row->addWidget(bind_.Bind(form_.cmdOK));
        return row;
    }

    static int WidthOf(const QWidget& edit, int characters) {
        return edit.fontMetrics().horizontalAdvance(QLatin1Char('0')) * (characters + 2);
    }

    static constexpr const char* kCalendarHint = "F4 opens the calendar.";

    records::frmEdit& form_;
    Binder& bind_;
    QDialog* window_;
    FieldNotes* notes_;
};

}  // namespace

QWidget* FrmEditView(records::frmEdit& form, Binder& bind, QWidget* parent) {
    return EditView(form, bind, parent).LayOut();
}

}  // namespace zenvora::desktop
