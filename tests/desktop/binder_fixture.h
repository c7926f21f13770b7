#pragma once

#include <exception>
#include <gtest/gtest.h>
#include <string>

#include "desktop/kinds_form.h"
#include "desktop/screen.h"
#include "platform/fault.h"

namespace zenvora::desktop {

using testing_support::KindsForm;
using testing_support::Settle;
using testing_support::Texts;

/// A form with one control of each kind, on a real screen.
struct BinderTest : testing::Test {
    BinderTest() {
        screen.Register<KindsForm>("frmKinds", testing_support::LayOut);
        forms.SetFaultHandler([this](const std::exception_ptr& fault) {
            try {
                std::rethrow_exception(fault);
            } catch (const Fault& problem) {
                told.push_back(problem.description);
            }
            return true;
        });
    }
    void Show() {
        form.Show(controls::Modality::Modeless);
        window = screen.WindowOf(form);
        ASSERT_NE(window, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }
    template <class Widget>
    Widget& Find(const char* name) {
        return testing_support::WidgetNamed<Widget>(*window, name);
    }

    QtDesktop screen;
    controls::Forms forms{screen};
    KindsForm form{forms};
    QWidget* window = nullptr;
    Texts told;
};

}  // namespace zenvora::desktop
