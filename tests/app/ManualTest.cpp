#include "core/MainFrame/Manual.h"
#include "core/Commands/CommandIds.h"
#include "core/Commands/Commands.h"
#include "core/Commands/MenuTable.h"
#include "core/Commands/Shortcuts.h"
#include "core/MainFrame/KeyCommands.h"
#include "core/Panels/ToolTable.h"
#include "tests/support/ProgramTest.h"

#include "TestPaths.h"

#include <QXmlStreamReader>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using TTexts = std::set<std::string>;

const fs::path MANUAL = VELLUM_SOURCE "/docs/manual";

std::string ReadAll(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<fs::path> List(const fs::path& folder, const char* pszExtension) {
    std::vector<fs::path> vPaths;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
        if (entry.path().extension() == pszExtension) vPaths.push_back(entry.path());
    return vPaths;
}

void AddWays(TTexts& setWays, const std::vector<TMenuItem>& vMenu, const std::string& strWay) {
    for (const TMenuItem& item : vMenu) {
        const std::string strItem = strWay + ToUtf8(PlainTextOf(item.strText));
        setWays.insert(strItem);
        AddWays(setWays, item.vChildren, strItem + " → ");
    }
}

/// The names in the pages, by the class of the element, and the pages' links and pictures.
struct CPages {
    CPages() {
        for (const fs::path& path : List(MANUAL, ".html")) {
            const std::string strPage = ReadAll(path);
            QXmlStreamReader xml(QByteArray::fromStdString(strPage));
            while (!xml.atEnd()) {
                if (xml.readNext() != QXmlStreamReader::StartElement) continue;
                const auto attributes = xml.attributes();
                for (const char* pszLink : {"href", "src"})
                    if (attributes.hasAttribute(pszLink))
                        m_mapNamed[pszLink].insert(attributes.value(pszLink).toString().toStdString());
                if (xml.name() == QLatin1String("b"))
                    m_mapNamed[attributes.value("class").toString().toStdString()].insert(
                        xml.readElementText().toStdString());
            }
            EXPECT_FALSE(xml.hasError())
                << path << ":" << xml.lineNumber() << " " << xml.errorString().toStdString();
            m_mapPages[Utf8Of(path.filename())] = strPage;
        }
    }
    std::map<std::string, TTexts> m_mapNamed;
    std::map<std::string, std::string> m_mapPages;
};

TEST(ManualPages, NameWhatTheApplicationShows) {
    CPages pages;
    TTexts setMenu, setPanels, setTools;
    AddWays(setMenu, LoadMenu(MENU_CANVAS), {});
    const auto vMenu = LoadMenu(MENU_CANVAS);
    ForEachCommand(vMenu, [&](const TMenuItem& item) {
        if (std::string(FindCommandName(item.nId)).starts_with("panel-"))
            setPanels.insert(ToUtf8(PlainTextOf(item.strText)));
    });
    for (const TToolRow& row : GetToolTable()) setTools.insert(ToUtf8(row.info.pszName));
    EXPECT_THAT(pages.m_mapNamed["menu"], testing::AllOf(testing::SizeIs(testing::Gt(30U)),
                                                         testing::Each(testing::AnyOfArray(setMenu))));
    EXPECT_THAT(pages.m_mapNamed["panel"], testing::ContainerEq(setPanels)) << "each is described";
    EXPECT_THAT(pages.m_mapNamed["tool"], testing::ContainerEq(setTools)) << "each is described";
    std::string strTexts =
        ReadAll(VELLUM_SOURCE "/resources/brushes.tsv") + ReadAll(VELLUM_SOURCE "/ui/modal/QtModal.h");
    for (const fs::path& path : List(VELLUM_SOURCE "/core", ".cpp")) strTexts += ReadAll(path);
    for (const std::string& strItem : pages.m_mapNamed["item"]) {
        const auto ends = [&](const char* pszEnd) {
            return strTexts.find("L\"" + strItem + pszEnd) != std::string::npos;
        };
        EXPECT_TRUE(ends("\"") || ends("(&") || ends("\\n") || ends("...") ||
                    strTexts.find("\t" + strItem + "\n") != std::string::npos)
            << strItem;
    }
}

TEST(ManualPages, LinksPicturesAndScriptsBelongTogether) {
    CPages pages;
    TTexts setFound{"manual.css"}, setPictures;
    for (const auto& page : pages.m_mapPages) setFound.insert(page.first);
    EXPECT_EQ(pages.m_mapNamed["href"], setFound) << "none leads nowhere, each page is linked";
    uintmax_t uBytes = 0;
    for (const fs::path& path : List(MANUAL, ".png")) {
        setPictures.insert("pictures/" + Utf8Of(path.filename()));
        uBytes += fs::file_size(path);
        EXPECT_TRUE(path.stem() == "lily" ||
                    fs::exists(MANUAL / "scripts" / (Utf8Of(path.stem()) + ".jsonl")));
    }
    EXPECT_EQ(pages.m_mapNamed["src"], setPictures);
    EXPECT_EQ(List(MANUAL, ".jsonl").size() + 1, setPictures.size());
    EXPECT_LT(uBytes, 1500U << 10);
}

TEST(ManualPages, KeysAreThoseOfTheCommands) {
    const CShortcuts& builtIn = CShortcuts::GetDefault();
    CPages pages;
    const std::string strList = FillKeys(pages.m_mapPages.extract("keys.html").mapped(), builtIn);
    for (const auto& [strName, strPage] : pages.m_mapPages)
        EXPECT_EQ(FillKeys(strPage, builtIn), strPage) << strName;

    EXPECT_EQ(FillKeys(strList, builtIn), strList);
    const auto vCommands = ListKeyCommands();
    ForEachCommand(vCommands, [&](const TMenuItem& item) {
        const auto vKeys = builtIn.GetKeys(item.nId);
        const std::string strRow = "<td>" + ToUtf8(PlainTextOf(item.strText)) + "</td><td><kbd>" +
                                   ToUtf8(NamesOfKeys(vKeys)) + "</kbd>";
        EXPECT_TRUE(vKeys.empty() || strList.find(strRow) != std::string::npos) << strRow;
    });
    EXPECT_NE(strList.find("<td>全選択</td><td><kbd>Ctrl+A</kbd>"), std::string::npos)
        << "a key of the tools";

    CShortcuts own = builtIn;
    own.Remove({'Z', true});
    own.Assign({0xBC}, ID_EDIT_UNDO); // a comma
    own.Clear(ID_VIEW_FIT);
    const std::string strOwn = FillKeys(R"(<kbd data-command="edit-undo">Ctrl+Z</kbd>
<kbd data-command="edit-undo">F3</kbd><kbd data-command="view-fit">Ctrl+0</kbd><kbd>Ctrl</kbd>)",
                                        own);
    EXPECT_EQ(strOwn, R"(<kbd data-command="edit-undo">F3</kbd>
<kbd data-command="edit-undo">F3</kbd><kbd data-command="view-fit">キーなし</kbd><kbd>Ctrl</kbd>)");
    EXPECT_NE(FillKeys(strList, own).find("<td>取り消し</td><td><kbd>F3, ,</kbd>"), std::string::npos);
}

class CManualScripts : public CProgramTest {};

TEST_F(CManualScripts, Play) {
    for (const fs::path& path : List(MANUAL, ".jsonl"))
        EXPECT_EQ(RunProgram(VELLUM_SESSION, Utf8Of(path) + " --in " VELLUM_SOURCE
                                                            "/docs/examples/drawing.png --out result.png"),
                  0)
            << m_strSaid;
}

} // namespace
