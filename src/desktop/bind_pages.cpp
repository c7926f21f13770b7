#include <QActionGroup>
#include <QMenu>
#include <QTabBar>
#include <QTextCharFormat>
#include <memory>

#include "desktop/binder.h"
#include "desktop/quiet.h"
#include "desktop/strings.h"

namespace zenvora::desktop {

using controls::Property;

QGroupBox* Binder::Bind(controls::Frame& control) {
    auto* const box = new QGroupBox;
    const auto show = [box, &control](Property property) {
        if (property != Property::Text) return;
        box->setTitle(Shown(control.Caption()));
        Name(*box, control.Caption());
    };
    Attach(control, *box, show);
    show(Property::Text);
    OnMouse(*box, QEvent::MouseButtonDblClick, [&control] { control.DblClick(); });
    return box;
}

QTabWidget* Binder::Bind(controls::TabPages& control) {
    auto* const tabs = new QTabWidget;
    for (int page = 0; page < control.Pages(); ++page)
        tabs->addTab(new QWidget, Shown(control.TabCaption(page)));
    const auto showing = std::make_shared<bool>(false);
    const auto show = [tabs, &control, showing](Property property) {
        if (property != Property::Items && property != Property::Selection) return;
        const Quiet quiet(*showing);
        for (int page = 0; page < control.Pages(); ++page) {
            const QString caption = Shown(control.TabCaption(page));
            if (tabs->tabText(page) != caption) tabs->setTabText(page, caption);
            if (tabs->isTabEnabled(page) != control.TabEnabled(page))
                tabs->setTabEnabled(page, control.TabEnabled(page));
        }
        tabs->setCurrentIndex(control.Tab());
    };
    Attach(control, *tabs, show);
    show(Property::Items);
    connect(tabs, &QTabWidget::currentChanged, context_, [this, &control, showing, show](int page) {
        if (*showing || page < 0) return;
        User([&] { control.SetTab(page); });
        if (attached_) show(Property::Selection);
    });
    return tabs;
}

QProgressBar* Binder::Bind(controls::ProgressBar& control) {
    auto* const bar = new QProgressBar;
    const auto show = [bar, &control](Property property) {
        if (property != Property::Value) return;
        bar->setRange(control.Minimum(), control.Maximum());
        bar->setValue(std::clamp(control.Value(), control.Minimum(), control.Maximum()));
    };
    Attach(control, *bar, show);
    show(Property::Value);
    return bar;
}

namespace {

QDate DateOf(text::Date date) {
    const text::CalendarDay day = text::CalendarDayOf(date);
    return {day.year, day.month, day.day};
}

}  // namespace

QCalendarWidget* Binder::Bind(controls::MonthView& control) {
    auto* const calendar = new QCalendarWidget;
    calendar->setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    calendar->setMinimumDate(DateOf(text::kFirstDate));
    calendar->setMaximumDate(DateOf(text::kLastDate));
    calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    // Red week ends are hard to read on a dark ground.
    calendar->setWeekdayTextFormat(Qt::Saturday, {});
    calendar->setWeekdayTextFormat(Qt::Sunday, {});
    const auto showing = std::make_shared<bool>(false);
    const auto show = [calendar, &control, showing](Property property) {
        if (property != Property::Value) return;
        const Quiet quiet(*showing);
        calendar->setSelectedDate(DateOf(control.Value()));
    };
    Attach(control, *calendar, show);
    show(Property::Value);
    const auto dayOf = [](QDate date) { return text::DayNumber(date.year(), date.month(), date.day()); };
    connect(calendar, &QCalendarWidget::selectionChanged, context_,
            [this, calendar, &control, showing, show, dayOf] {
                if (*showing) return;
                if (const auto day = dayOf(calendar->selectedDate())) User([&] { control.SetValue(*day); });
                if (attached_) show(Property::Value);
            });
    connect(calendar, &QCalendarWidget::clicked, context_, [this, &control, dayOf](QDate date) {
        if (const auto day = dayOf(date)) User([&] { control.ClickDate(*day); });
    });
    connect(calendar, &QCalendarWidget::activated, context_, [this, &control, dayOf](QDate date) {
        if (const auto day = dayOf(date)) User([&] { control.DblClickDate(*day); });
    });
    return calendar;
}

QAction* Binder::BindItem(controls::MenuItem& item, QWidget& parent) {
    auto* const action = new QAction(&parent);
    action->setObjectName(ObjectName(item));
    action->setShortcut(QKeySequence::fromString(Shown(item.Shortcut()), QKeySequence::PortableText));
    const auto show = [action, &item](Property property) {
        switch (property) {
            case Property::Text:
                action->setText(Shown(item.Caption()));
                break;
            case Property::Enabled:
                action->setEnabled(item.Enabled());
                break;
            case Property::Visible:
                action->setVisible(item.Visible());
                break;
            case Property::Value:
                action->setCheckable(item.Checked() || action->isCheckable());
                action->setChecked(item.Checked());
                break;
            case Property::ToolTipText:
                action->setToolTip(Shown(item.ToolTipText()));
                break;
            default:
                break;
        }
    };
    for (const Property property :
         {Property::Text, Property::Enabled, Property::Visible, Property::Value, Property::ToolTipText}) {
        show(property);
    }
    observations_.push_back(item.Observe(show));
    connect(action, &QAction::triggered, context_, [this, &item, show] {
        User([&] { item.Click(); });
        // A checked entry has turned itself already; the rule decides.
        if (attached_) show(Property::Value);
    });
    return action;
}

void Binder::BindMenus(QMenuBar& bar) {
    const auto addMenu = [this](QWidget& parent, controls::MenuItem& title) {
        auto* const menu = new QMenu(&parent);
        menu->setToolTipsVisible(true);
        QAction* const action = BindItem(title, parent);
        action->setMenu(menu);
        parent.addAction(action);
        return menu;
    };
    for (const controls::Menu& menu : form_.Menus()) {
        QMenu* const entries = addMenu(bar, *menu.title);
        for (const controls::Menu::Entry& entry : menu.entries) {
            if (entry.item == nullptr) {
                entries->addSeparator();
            } else if (entry.children.empty()) {
                entries->addAction(BindItem(*entry.item, *entries));
            } else {
                QMenu* const children = addMenu(*entries, *entry.item);
                for (controls::MenuItem* child : entry.children)
                    children->addAction(BindItem(*child, *children));
            }
        }
    }
}

}  // namespace zenvora::desktop
