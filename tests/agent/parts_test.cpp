#include "agent/bindings/bindings.h"
#include "agent/input/keytext.h"
#include "agent/items/items.h"
#include "agent/reflection/registry.h"
#include "agent/reflection/value.h"

#include <gtest/gtest.h>

using namespace Torvix::Agent;

namespace {

QString q(const char* text)
{
    return QString::fromUtf8(text);
}

/** The registry as it is in an application. */
Registry& filledRegistry()
{
    static const bool filled = (bindAll(Registry::instance()), true);
    Q_UNUSED(filled);
    return Registry::instance();
}

/** The method of a class, by its signature; null when there is none. */
const MethodInfo* methodOf(const char* className, const char* signature)
{
    const ClassInfo* info = filledRegistry().byName(className);
    if (info)
        for (const MethodInfo& method : info->methods)
            if (method.signature() == signature)
                return &method;
    return nullptr;
}

} // namespace

TEST(AgentKeys, angleBracketsAreKeysOnlyWhereTheyNameOne)
{
    const QVector<KeyStroke> strokes = keyStrokes(q("a<b>Z<Ctrl+Shift+s><Return><PageUp><nokey>\n"));
    QStringList read;
    for (const KeyStroke& stroke : strokes)
        read.append(QStringLiteral("%1/%2/%3")
                        .arg(stroke.key, 0, 16)
                        .arg(int(stroke.modifiers), 0, 16)
                        .arg(stroke.isPlainText));
    EXPECT_EQ(read.mid(0, 7).join(q(" ")),
              q("41/0/1 3c/0/1 42/0/1 3e/0/1 5a/2000000/1 53/6000000/0 1000004/0/0"));
    EXPECT_EQ(strokes.at(7).key, int(Qt::Key_PageUp));
    EXPECT_EQ(strokes.at(8).text, q("<")) << "no key: the text itself";
    EXPECT_EQ(strokes.last().key, int(Qt::Key_Return));
    // What is recorded types the same again.
    for (const char* text : {"<Ctrl+Shift+S>", "<Alt+F4>", "<Left>", "x"}) {
        const KeyStroke stroke = keyStrokes(q(text)).first();
        EXPECT_EQ(keyText(stroke.key, stroke.modifiers, stroke.text), q(text));
    }
    EXPECT_EQ(modifiersOf(128 | 256), Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(modifiersOf(int(Qt::AltModifier)), Qt::AltModifier);
}

TEST(AgentItems, pathsOfTextsKeepDotsAndBackslashes)
{
    const QStringList texts = {q("a.b"), q("c\\d"), q(""), q("e")};
    EXPECT_EQ(joinItemPath(texts), q("a\\.b.c\\\\d..e"));
    EXPECT_EQ(splitItemPath(joinItemPath(texts)), texts);
    EXPECT_EQ(splitItemPath(q("C:\\dir")), QStringList{q("C:\\dir")})
        << "a backslash before a letter is itself";
    EXPECT_EQ(plainActionText(q("Save && &Close\tCtrl+S")), q("Save & Close"));
}

TEST(AgentRegistry, signaturesComeFromTheMembers)
{
    EXPECT_TRUE(methodOf("QTableWidget", "item(int, int)"));
    EXPECT_TRUE(methodOf("QTableWidget", "setItem(int, int, QTableWidgetItem*)"));
    EXPECT_TRUE(methodOf("QComboBox", "addItem(const QString&, const QVariant&)"));
    EXPECT_TRUE(methodOf("QComboBox", "addItem(const QString&)")) << "a default argument left out";
    EXPECT_TRUE(methodOf("QSplitter", "setSizes(QList<int>)") ||
                methodOf("QSplitter", "setSizes(const QList<int>&)"));
    const MethodInfo* find = methodOf("QTreeWidget", "findItems(const QString&, Qt::MatchFlag)");
    ASSERT_TRUE(find);
    EXPECT_TRUE(find->arguments.back().type.isEnum);
    EXPECT_EQ(find->result.name, "QTreeWidgetItem");
    EXPECT_EQ(find->result.flags, quint32(TypeUse::List | TypeUse::Pointer));
    Registry& registry = filledRegistry();
    EXPECT_TRUE(registry.inherits("QTableWidget", "QObject"));
    EXPECT_TRUE(registry.inherits("QKeyEvent", "QEvent"));
    EXPECT_FALSE(registry.inherits("QObject", "QTableWidget"));
    const EnumInfo* buttons = registry.enumeration("Qt::MouseButton");
    ASSERT_TRUE(buttons);
    EXPECT_TRUE(registry.enumeration("QAbstractItemView::SelectionMode"));
}

TEST(AgentTypes, areReadFromTheirCppText)
{
    const struct
    {
        const char* text;
        const char* name;
        quint32 flags;
    } cases[] = {
        {"int", "int", 0},
        {"const QString&", "QString", TypeUse::Constant | TypeUse::Reference},
        {"const QWidget*", "QWidget", TypeUse::Constant | TypeUse::Pointer},
        {"QList<QWidget*>", "QWidget", TypeUse::List | TypeUse::Pointer},
        {"QVector<int>", "int", TypeUse::List},
        {"QList<QVariant>", "QVariantList", 0},
        {"QMap<QString,QVariant>", "QMap<QString,QVariant>", 0},
    };
    for (const auto& each : cases) {
        const TypeUse use = TypeUse::parse(each.text);
        EXPECT_EQ(use.name, each.name) << each.text;
        EXPECT_EQ(use.flags, each.flags) << each.text;
    }
}
