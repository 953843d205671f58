#include "VelkLibrary/UI/PanelTest.h"
#include "support/MetaTypes.h"
#include "support/Numbers.h"

#include <gmock/gmock.h>

#include <QMetaMethod>
#include <QMetaType>

#include <type_traits>

namespace {

using testing::ElementsAreArray;

static_assert(std::is_base_of_v<QProgressDialog, LibraryProgressPanel>);
static_assert(std::is_base_of_v<LibraryProgressBase, LibraryProgressPanel>);
static_assert(std::is_base_of_v<QProgressBar, ProgressGauge>);
static_assert(std::is_same_v<std::underlying_type_t<ProgressDisplayType>, std::int32_t>);

struct MethodCase
{
    const char* name;
    const QMetaObject* object;
    const char* signature;
    QMetaMethod::MethodType kind;
    QMetaMethod::Access access;
    std::vector<std::string> parameterNames;
};

void PrintTo(const MethodCase& row, std::ostream* out)
{
    *out << row.signature;
}

class MetaObjects : public testing::TestWithParam<MethodCase>
{};

TEST_P(MetaObjects, HaveTheMethod)
{
    const int index = GetParam().object->indexOfMethod(GetParam().signature);
    ASSERT_GE(index, GetParam().object->methodOffset()) << "not a method of the class itself";
    const QMetaMethod method = GetParam().object->method(index);
    EXPECT_EQ(method.methodType(), GetParam().kind);
    EXPECT_EQ(method.access(), GetParam().access);
    EXPECT_EQ(std::string(method.typeName()), "void");
    std::vector<std::string> names;
    for (const QByteArray& parameterName : method.parameterNames())
        names.push_back(parameterName.toStdString());
    EXPECT_THAT(names, ElementsAreArray(GetParam().parameterNames));
}

constexpr auto slot = QMetaMethod::Slot;
constexpr auto isPublic = QMetaMethod::Public;
constexpr auto isPrivate = QMetaMethod::Private;
const QMetaObject* const textClass = &ProgressText::staticMetaObject;
const QMetaObject* const panelClass = &LibraryProgressPanel::staticMetaObject;
const QMetaObject* const gaugeClass = &ProgressGauge::staticMetaObject;

const MethodCase methods[] = {
    {"TextLabel", textClass, "setLabelText(QString)", QMetaMethod::Signal, isPublic, {"labelText"}},
    {"TextRangeText", textClass, "setRangeText(QString)", QMetaMethod::Signal, isPublic, {"rangeText"}},
    {"TextPause", textClass, "onPauseProcess()", slot, isPrivate, {}},
    {"TextResume", textClass, "onResumeProcess()", slot, isPrivate, {}},
    {"TextDisplayType", textClass, "onSwitchDisplayType(ProgressDisplayType)", slot, isPrivate, {"dispType"}},
    {"TextValue", textClass, "onSetValue(int)", slot, isPrivate, {"val"}},
    {"TextRange", textClass, "onSetRange(int)", slot, isPrivate, {"val"}},
    {"TextText", textClass, "onSetText(std::string)", slot, isPrivate, {"text"}},
    {"PanelUpdate", panelClass, "onUpdateInGauge()", slot, isPublic, {}},
    {"PanelValueSize", panelClass, "onSetValueInGauge(size_t)", slot, isPublic, {"val"}},
    {"PanelValueInt", panelClass, "onSetValueInGauge(int)", slot, isPublic, {"val"}},
    {"PanelRangeSize", panelClass, "onSetRangeInGauge(size_t)", slot, isPublic, {"val"}},
    {"PanelRangeInt", panelClass, "onSetRangeInGauge(int)", slot, isPublic, {"val"}},
    {"PanelText", panelClass, "onSetText(std::string)", slot, isPublic, {"text"}},
    {"PanelUnits", panelClass, "onSetUnits(std::string)", slot, isPublic, {"unit_string"}},
    {"PanelLabel", panelClass, "setProgressLabelText(QString)", slot, isPublic, {"labelStr"}},
    {"PanelRangeText", panelClass, "setProgressRangeText(QString)", slot, isPublic, {"rangeStr"}},
    {"GaugeUpdate", gaugeClass, "onUpdate()", slot, isPublic, {}},
    {"GaugeValue", gaugeClass, "onSetValue(int)", slot, isPublic, {"size"}},
    {"GaugeRange", gaugeClass, "onSetRange(int)", slot, isPublic, {"size"}},
};
INSTANTIATE_TEST_SUITE_P(Rows, MetaObjects, testing::ValuesIn(methods), [](const auto& row) { return row.param.name; });

class MetaTypes : public test::PanelTest
{};

TEST_F(MetaTypes, OfArgumentsAreRegisteredByThePanel)
{
    makePanel(test::displayType::barOnly);
    EXPECT_EQ(test::metaTypeNamed("ProgressDisplayType"), qMetaTypeId<ProgressDisplayType>());
    EXPECT_NE(test::metaTypeNamed("std::string"), static_cast<int>(QMetaType::UnknownType));
    EXPECT_EQ(test::metaTypeNamed("size_t"), static_cast<int>(QMetaType::ULongLong));
}

TEST_F(MetaTypes, TheClassesHaveTheirNames)
{
    EXPECT_STREQ(panelClass->className(), "LibraryProgressPanel");
    EXPECT_STREQ(gaugeClass->className(), "ProgressGauge");
    EXPECT_STREQ(textClass->className(), "ProgressText");
}

}  // namespace
