#include "tests/support/windows.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include "shell/dialogs/CSizeDlg.h"

namespace {

int waitingScripts = 0;

QWidget* Control(const CSizeDlg& dialog, int id) {
    QWidget* control = dialog.GetDlgItem(id);
    if (control == nullptr) {
        ADD_FAILURE() << "no control " << id;
    } else if (!control->isEnabled()) {
        ADD_FAILURE() << "control " << id << " is disabled";
    } else if (!control->isVisible()) {
        ADD_FAILURE() << "control " << id << " is hidden";
    } else {
        return control;
    }
    return nullptr;
}

}  // namespace

void WaitFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

bool WaitFor(const std::function<bool()>& condition, int milliseconds) {
    QElapsedTimer since;
    since.start();
    while (!condition()) {
        if (since.elapsed() > milliseconds) {
            return false;
        }
        WaitFor(5);
    }
    return true;
}

void InNextDialog(std::function<void(CSizeDlg&)> script) {
    ++waitingScripts;
    auto* poll = new QTimer(qApp);
    const QPointer<QWidget> before = QApplication::activeModalWidget();
    QObject::connect(poll, &QTimer::timeout, poll, [poll, before, run = std::move(script)] {
        auto* dialog = dynamic_cast<CSizeDlg*>(QApplication::activeModalWidget());
        if (dialog == nullptr || dialog == before || !dialog->isVisible()) {
            return;
        }
        poll->stop();
        poll->deleteLater();
        --waitingScripts;
        const QPointer<CSizeDlg> alive = dialog;
        run(*dialog);
        if (alive && alive->isVisible()) {
            ADD_FAILURE() << "the script left its window open";
            alive->done(CSizeDlg::IdCancel);
        }
    });
    poll->start(5);
}

bool AllDialogsCame() {
    return waitingScripts == 0;
}

void Press(CSizeDlg& dialog, int id) {
    if (auto* button = dynamic_cast<QAbstractButton*>(Control(dialog, id))) {
        QTest::mouseClick(button, Qt::LeftButton);
    }
}

void Type(CSizeDlg& dialog, int id, const QString& text) {
    QWidget* control = Control(dialog, id);
    if (control == nullptr) {
        return;
    }
    control->setFocus();
    QTest::keyClick(control, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(control, Qt::Key_Delete);
    // Key events carry one unit each, and Chinese text comes from an input method in one piece anyway.
    if (auto* edit = dynamic_cast<QPlainTextEdit*>(control)) {
        edit->insertPlainText(text);
    } else if (auto* line = dynamic_cast<QLineEdit*>(control)) {
        line->insert(text);
    } else if (auto* box = dynamic_cast<QComboBox*>(control); box != nullptr && box->isEditable()) {
        box->setEditText(text);
    } else {
        ADD_FAILURE() << "nothing can be typed into control " << control->objectName().toStdString();
    }
}

void PressKey(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&widget, key, modifiers);
}

QString TextOf(const CSizeDlg& dialog, int id) {
    QWidget* control = dialog.GetDlgItem(id);
    if (auto* button = dynamic_cast<QAbstractButton*>(control)) {
        return button->text();
    }
    if (auto* label = dynamic_cast<QLabel*>(control)) {
        return label->text();
    }
    if (auto* line = dynamic_cast<QLineEdit*>(control)) {
        return line->text();
    }
    if (auto* box = dynamic_cast<QComboBox*>(control)) {
        return box->currentText();
    }
    if (auto* edit = dynamic_cast<QPlainTextEdit*>(control)) {
        return edit->toPlainText();
    }
    if (auto* date = dynamic_cast<QDateTimeEdit*>(control)) {
        return date->text();
    }
    ADD_FAILURE() << "no text in control " << id;
    return {};
}

bool IsEnabled(const CSizeDlg& dialog, int id) {
    const QWidget* control = dialog.GetDlgItem(id);
    return control != nullptr && control->isEnabled();
}

void ExpectNothingCut(const CSizeDlg& dialog) {
    for (const QWidget* control : dialog.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (control->isVisible()) {
            EXPECT_GE(control->width(), control->minimumSizeHint().width())
                << control->objectName().toStdString();
            EXPECT_TRUE(dialog.rect().contains(control->geometry())) << control->objectName().toStdString();
        }
    }
}

void Photograph(QWidget& window, const QString& name) {
    const QString folder = qEnvironmentVariable("DROVANE_SCREENSHOTS");
    if (!folder.isEmpty()) {
        window.grab().save(folder + "/" + name + ".png");
    }
}
