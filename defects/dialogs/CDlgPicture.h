// A picture of a defect as large as the window: Left and Right change between both, Up and Down walk through
// the defects, Esc closes. It follows whatever the operator selects meanwhile.
#pragma once

#include <array>
#include <functional>
#include <string>

#include "shell/dialogs/CSizeDlg.h"

class CPictureBox;

class CDlgPicture : public CSizeDlg {
public:
    static constexpr int IdPicture = 5120;
    static constexpr int IdHint = 5121;

    explicit CDlgPicture(QWidget* parent);

    void Come(std::size_t which);
    void Show(const std::array<std::string, 2>& paths, const std::string& title);
    const CPictureBox& Box() const { return *m_box; }

    std::function<void(int step)> OnWalk;

protected:
    void OnOK() override { OnCancel(); }
    void OnCancel() override { hide(); }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Turn(std::size_t which);

    CPictureBox* m_box;
    std::array<std::string, 2> m_paths;
    std::string m_title;
    std::size_t m_which = 0;
};
