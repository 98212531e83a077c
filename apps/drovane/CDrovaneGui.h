// The toolkit's side of the program. What a handler of a window throws ends that handler and not the program:
// the operator is told, and what he has open stays open.
#pragma once

#include <QApplication>
#include <QTranslator>
#include <functional>

class CDrovaneGui : public QApplication {
public:
    // Both must live as long as this.
    CDrovaneGui(int& argc, char** argv);

    // Gives the toolkit's own texts (file chooser, colours, menus of edits) in the language of the program's,
    // as far as the system has them.
    void SpeakLanguage();

    // Runs `handler` from the event loop when the system asks the process to end (SIGTERM, SIGHUP, SIGINT).
    void OnTerminate(std::function<void()> handler);

    bool notify(QObject* receiver, QEvent* event) override;

private:
    QTranslator m_texts;
};

// Runs `handler`; false if it throws, which the operator is told if it is `shown`. While he is being told,
// what else fails only goes to standard error, or a window that can't be drawn would bury him in boxes.
bool RunGuarded(bool shown, const std::function<bool()>& handler);
