#include "support/scripted_desktop.h"

#include <gtest/gtest.h>
#include <utility>

#include "platform/controls/forms.h"

namespace zenvora::testing_support {
namespace {

/// What a user gets who closes the box without choosing.
controls::Answer QuietAnswer(controls::Buttons buttons) {
    switch (buttons) {
        case controls::Buttons::Ok:
            return controls::Answer::Ok;
        case controls::Buttons::AbortRetryIgnore:
            return controls::Answer::Abort;
        case controls::Buttons::YesNo:
            return controls::Answer::No;
        case controls::Buttons::OkCancel:
        case controls::Buttons::YesNoCancel:
        case controls::Buttons::RetryCancel:
            break;
    }
    return controls::Answer::Cancel;
}

}  // namespace

ScriptedDesktop::~ScriptedDesktop() {
    for (const Step& step : answers_) {
        ADD_FAILURE() << "never asked: " << (step.anyText ? "(any message)" : step.text);
    }
    for (const FormStep& step : forms_) {
        ADD_FAILURE() << "never shown: " << step.name;
    }
    for (const std::string& file : files_) {
        ADD_FAILURE() << "no file dialog came for the answer \"" << file << "\"";
    }
}

void ScriptedDesktop::Expect(std::string text, controls::Answer answer) {
    answers_.push_back({false, std::move(text), answer});
}

void ScriptedDesktop::ExpectAny(controls::Answer answer) {
    answers_.push_back({true, {}, answer});
}

void ScriptedDesktop::ExpectForm(std::string name, std::function<void(controls::Form&)> user) {
    forms_.push_back({std::move(name), std::move(user)});
}

void ScriptedDesktop::ExpectFile(std::string path) {
    files_.push_back(std::move(path));
}

controls::Answer ScriptedDesktop::Show(const controls::MessageBox& message) {
    messages.push_back(message);
    if (answers_.empty()) {
        ADD_FAILURE() << "unexpected message \"" << message.title << "\": " << message.text;
        return QuietAnswer(message.buttons);
    }
    const Step step = std::move(answers_.front());
    answers_.pop_front();
    if (!step.anyText) {
        EXPECT_EQ(message.text, step.text) << "title: " << message.title;
    }
    return step.answer;
}

std::string ScriptedDesktop::Choose(const controls::FileDialog& dialog) {
    dialogs.push_back(dialog);
    if (files_.empty()) {
        ADD_FAILURE() << "unexpected file dialog \"" << dialog.title << "\"";
        return {};
    }
    std::string file = std::move(files_.front());
    files_.pop_front();
    return file;
}

void ScriptedDesktop::ShowForm(controls::Form& form, controls::Modality modality) {
    shown.push_back(form.Name());
    FormStep step;
    if (forms_.empty()) {
        ADD_FAILURE() << "unexpected form " << form.Name();
    } else {
        step = std::move(forms_.front());
        forms_.pop_front();
        EXPECT_EQ(form.Name(), step.name);
    }
    // What the user does are events: a fault goes the way it goes on a real screen.
    controls::Forms& program = form.Program();
    program.Event([&] { form.Activate(); });
    if (step.user && form.Visible()) program.Event([&] { step.user(form); });
    if (modality == controls::Modality::Modeless) return;
    if (form.Visible()) program.Event([&] { form.Close(); });
    if (form.Visible()) form.Hide();
}

void ScriptedDesktop::HideForm(controls::Form& form) {
    static_cast<void>(form);
}

void ScriptedDesktop::SetHourglass(bool on) {
    hourglass = on;
    ++hourglassChanges;
}

void ScriptedDesktop::Progress(long done, long total) {
    ++progressCalls;
    lastDone = done;
    lastTotal = total;
}

}  // namespace zenvora::testing_support
