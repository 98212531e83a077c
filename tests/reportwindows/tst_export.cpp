// The window of the Word report, driven as an operator does, up to the document.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QTest>
#include <set>

#include "assessment/explain/dialogs/gradechoice.h"
#include "lists/CTestingList.h"
#include "reports/collectreport.h"
#include "reports/dialogs/CDlgExport.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "tests/reports/project.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/CTestHome.h"
#include "tests/support/windows.h"

namespace {

constexpr int Sections = 1031;
constexpr int All = 1032;
constexpr int Status = 1048;
constexpr int Region = 1063;
constexpr int Soil = 1064;

// The texts that a label really showed, also while the work blocks the window.
class CPainted : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            Texts.insert(FromQt(dynamic_cast<QLabel&>(*watched).text()));
            if (OnPaint) {
                OnPaint();
            }
        }
        return false;
    }
    std::function<void()> OnPaint;
    std::set<std::string> Texts;
};

class Export : public testing::Test {
protected:
    ~Export() override { EXPECT_TRUE(AllDialogsCame()); }

    CRecExport& Open(const char* standard, const std::string& name = "") {
        m_project = std::make_unique<CReportProject>(m_folder, standard);
        if (!name.empty()) {
            m_project->Database.Execute("update Attrib set CriterionName = '" + name + "'");
        }
        return m_project->Database;
    }
    static CTestingList& List(CSizeDlg& dialog) { return *dialog.Item<CTestingList>(Sections); }
    static int Run(CRecExport& project, const std::function<void(CSizeDlg&)>& script) {
        InNextDialog([&](CSizeDlg& dialog) {
            WaitFor([&] { return dialog.isActiveWindow(); });
            script(dialog);
        });
        return CDlgExport(project).DoModal();
    }

    CTestFolder m_folder;
    CTestHome m_home{m_folder.Host("home")};
    std::unique_ptr<CReportProject> m_project;
};

TEST_F(Export, OpensWithTheListsOfTheStandard) {
    struct Case {
        const char* Standard;
        int Name;  // of another standard than the file's
        int FirstK;
        int FirstT;
        int CountT;
    };
    constexpr Case cases[] = {{"GB", 0, 2351, 2355, 11},
                              {"GB", 2700, 2351, 2355, 11},
                              {"GZ", 0, 2300, 2304, 2},
                              {"SH", 0, 2372, 2376, 2},
                              {"CQ", 0, 2351, 2355, 11}};
    for (const char* language : {"简体中文", "English"}) {
        m_folder.UseLanguage(language);
        for (const Case& c : cases) {
            std::filesystem::remove(m_folder.Host("db/p.mdb"));
            CDlgExport dialog(Open(c.Standard, c.Name > 0 ? LoadMessage(c.Name) : ""));
            dialog.show();
            WaitFor(20);
            EXPECT_EQ(dialog.windowTitle(), MessageText(300));
            EXPECT_EQ(TextOf(dialog, 1057), MessageText(304));
            EXPECT_EQ(TextOf(dialog, Region), MessageText(c.FirstK));
            EXPECT_EQ(TextOf(dialog, Soil), MessageText(c.FirstT));
            EXPECT_EQ(dialog.Item<QComboBox>(Region)->count(), 4);
            EXPECT_EQ(dialog.Item<QComboBox>(Soil)->count(), c.CountT);
            EXPECT_FALSE(dialog.GetDlgItem(1065)->isVisible() || dialog.GetDlgItem(1058)->isVisible());
            EXPECT_EQ(List(dialog).CheckedSections().GetSize(), 5);
            for (const QWidget* control :
                 dialog.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
                if (control->isVisible()) {
                    const std::string id = control->objectName().toStdString();
                    EXPECT_GE(control->width(), control->minimumSizeHint().width()) << id;
                    EXPECT_TRUE(dialog.rect().contains(control->geometry())) << id;
                }
            }
            Photograph(dialog, QString("export-%1-%2-%3").arg(language, c.Standard).arg(c.Name));
            m_project.reset();
        }
    }
}

TEST_F(Export, TheChoiceOfTheReviewIsOneClickAway) {
    CRecExport& project = Open("GB");
    KeepGradeChoice(project.Path(), 2, 1);
    (void)Run(project, [](CSizeDlg& dialog) {
        EXPECT_EQ(dialog.Item<QComboBox>(Region)->currentIndex(), 0);
        EXPECT_EQ(dialog.Item<QComboBox>(Soil)->currentIndex(), 0);
        ExpectNothingCut(dialog);
        Photograph(dialog, "export-choice");
        Press(dialog, 5069);
        EXPECT_EQ(dialog.Item<QComboBox>(Region)->currentIndex(), 2);
        EXPECT_EQ(dialog.Item<QComboBox>(Soil)->currentIndex(), 1);
        Press(dialog, CSizeDlg::IdCancel);
    });
}

TEST_F(Export, RowsAreTickedWithTheMouseAndWithKeys) {
    (void)Run(Open("GB"), [](CSizeDlg& dialog) {
        CTestingList& list = List(dialog);
        const auto ids = [&list] { return SectionIds(list.CheckedSections()); };
        auto& all = *dialog.Item<QCheckBox>(All);
        EXPECT_EQ(dialog.focusWidget(), &list);
        EXPECT_EQ(all.checkState(), Qt::Checked);
        PressKey(list, Qt::Key_Home);
        PressKey(list, Qt::Key_Down, Qt::ShiftModifier);
        PressKey(list, Qt::Key_Space);
        EXPECT_EQ(ids(), (CArrID{3, 4, 5}));
        EXPECT_TRUE(WaitFor([&] { return all.checkState() == Qt::PartiallyChecked; }));
        EXPECT_EQ(all.text(), "全选（3/5）");
        Press(dialog, All);
        EXPECT_EQ(ids(), (CArrID{1, 2, 3, 4, 5}));
        PressKey(list, Qt::Key_Down, Qt::AltModifier);  // nothing is moved in this window
        EXPECT_EQ(list.RowText(0, 0), "零号");
        Press(dialog, All);
        EXPECT_EQ(ids(), CArrID());
        EXPECT_EQ(all.checkState(), Qt::Unchecked);
        PressKey(dialog, Qt::Key_Escape);
    });
}

TEST_F(Export, TheReportIsWrittenAndOpened) {
    m_folder.Desktop.CanOpen = true;
    CPainted painted;
    EXPECT_EQ(Run(Open("GB"),
                  [&](CSizeDlg& dialog) {
                      dialog.GetDlgItem(Status)->installEventFilter(&painted);
                      PressKey(List(dialog), Qt::Key_Return);
                  }),
              CSizeDlg::IdOk);
    const auto& opened = m_folder.Desktop.Opened;
    ASSERT_EQ(opened.size(), 1U);
    EXPECT_TRUE(opened[0].starts_with(m_folder.Path("home/Documents/Drovane/工程"))) << opened[0];
    EXPECT_TRUE(HostFiles().ReadFile(opened[0], std::size_t{1} << 24U).value_or("").starts_with("PK"));
    for (const int number : {2154, 2155, 2159, 2160}) {
        EXPECT_TRUE(painted.Texts.contains(LoadMessage(number))) << number;
    }
}

TEST_F(Export, WhatFailsLeavesTheWindowOpen) {
    // Told again at each try, since the window can be used again.
    (void)Run(Open("GB", LoadMessage(2700)), [&](CSizeDlg& dialog) {
        for (int i = 0; i < 2; ++i) {
            m_folder.Prompts.Expect(2158);
            Press(dialog, CSizeDlg::IdOk);
        }
        EXPECT_EQ(TextOf(dialog, Status), "");
        Press(dialog, CSizeDlg::IdCancel);
    });
    std::filesystem::remove(m_folder.Host("db/p.mdb"));
    (void)Run(Open("GB"), [&](CSizeDlg& dialog) {
        m_project->Database.Execute("alter table Record rename to Gone");
        m_folder.Prompts.Allow(2017);
        m_folder.Prompts.Expect(2157);
        Press(dialog, CSizeDlg::IdOk);
        m_project->Database.Execute("alter table Gone rename to Record");

        // Without a section there is no defect for a chart, but a document.
        m_folder.Desktop.CanOpen = true;
        Press(dialog, All);
        m_folder.Prompts.Expect(2384);
        Press(dialog, CSizeDlg::IdOk);
        EXPECT_TRUE(dialog.isVisible());
        ASSERT_EQ(m_folder.Desktop.Opened.size(), 1U);
        EXPECT_TRUE(HostFiles().Exists(m_folder.Desktop.Opened[0]));
        EXPECT_EQ(dialog.GetDlgItem(Status)->toolTip(),
                  ToQt(HostFiles().HostPath(m_folder.Desktop.Opened[0])));
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        Press(dialog, CSizeDlg::IdCancel);
    });
}

TEST_F(Export, TheGeneratorGetsTheDataOfTheChosen) {
    CRecExport& project = Open("CQ");
    m_folder.Prompts.GivePath("");
    EXPECT_EQ(Run(project, [](CSizeDlg& dialog) { Press(dialog, CSizeDlg::IdOk); }), CSizeDlg::IdOk);
    EXPECT_TRUE(m_folder.Desktop.Started.empty());

    m_folder.WriteFile("a.doc.docx", "mine");
    m_folder.Prompts.GivePath(m_folder.Path("a.doc"));
    m_folder.Prompts.ExpectQuestion(3233, false);
    m_folder.Prompts.GivePath(m_folder.Path("b.DOCX"));
    m_folder.Prompts.GivePath(m_folder.Path("b.DOCX"));
    m_folder.WriteFile("word/config.xml/in the way", "");
    EXPECT_EQ(Run(project,
                  [&](CSizeDlg& dialog) {
                      List(dialog).SetChecked(0, false);
                      dialog.Item<QComboBox>(Region)->setCurrentIndex(1);
                      dialog.Item<QComboBox>(Soil)->setCurrentIndex(3);
                      m_folder.Prompts.Expect(3253);
                      PressKey(dialog, Qt::Key_Return);
                      EXPECT_TRUE(dialog.isVisible());
                      std::filesystem::remove_all(m_folder.Host("word/config.xml"));
                      PressKey(dialog, Qt::Key_Return);
                  }),
              CSizeDlg::IdOk);
    ASSERT_EQ(m_folder.Desktop.Started.size(), 1U);
    const CRecordingDesktop::Process& started = m_folder.Desktop.Started[0];
    EXPECT_EQ(started.Program, m_folder.Path("word/DocxGenerator"));
    ASSERT_EQ(started.Arguments.size(), 4U);
    EXPECT_EQ(started.Arguments[1], m_folder.Host("b.DOCX").string());
    EXPECT_EQ(started.Arguments[2], "--run");
    // The generator's own, since the next report may come before it has read these.
    const std::filesystem::path run = started.Arguments[3];
    EXPECT_EQ(ReadHostFile(run / "config.xml"), m_folder.ReadFile("word/config.xml"));
    EXPECT_EQ(ReadHostFile(run / "_lists.json"), m_folder.ReadFile("word/_lists.json"));
    std::filesystem::remove_all(run);
    EXPECT_EQ(started.Folder, m_folder.Path("word") + "\\");
    ReportLists lists;
    ASSERT_TRUE(CollectReport(project, "重庆规范", m_project->Chosen, 6.0F, 8.0F, lists));
    EXPECT_EQ(m_folder.ReadFile("word/config.xml"), project.ReportBytes());
}

}  // namespace
