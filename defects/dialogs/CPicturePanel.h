// Both pictures of the defect that the operator stands on, side by side; each can be enlarged into a window
// of its own, in which he goes on walking through the defects.
#pragma once

#include <QWidget>
#include <array>
#include <functional>
#include <string>

class CDlgPicture;
class CPictureBox;

class CPicturePanel : public QWidget {
public:
    explicit CPicturePanel(QWidget* parent = nullptr);

    // Empty: none. `title` tells of which defect they are.
    void Show(const std::string& first, const std::string& second, const std::string& title);
    const CPictureBox& Box(std::size_t which) const { return *m_boxes[which]; }
    CDlgPicture* Enlarged() const { return m_enlarged; }  // null until one was
    void Enlarge(std::size_t which);

    std::function<void(int step)> OnWalk;  // to the next defect, or back

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Load();

    std::array<CPictureBox*, 2> m_boxes{};
    std::array<std::string, 2> m_paths;
    std::string m_title;
    CDlgPicture* m_enlarged = nullptr;
};
