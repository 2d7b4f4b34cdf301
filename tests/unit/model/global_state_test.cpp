#include <gtest/gtest.h>

#include "qt_printers.h"

#include <QSet>
#include <QSignalSpy>

#include "model/global_state.h"
#include "model/handover.h"
#include "model/knob_record.h"
#include "model/vocabulary.h"

using namespace dialcraft;

namespace {

TEST(GlobalStateTest, StartsWith36DefaultKnobRecordsInIndexOrder)
{
    GlobalState state;
    const QList<CreateSetupAreaViewData*> records = state.SetupAreaData();
    ASSERT_EQ(records.size(), 36);
    for (int i = 0; i < 36; ++i) {
        EXPECT_EQ(records[i]->knob_index(), i);
        EXPECT_EQ(records[i]->message_type_menu_string(), QStringLiteral("选择消息类型"));
        EXPECT_EQ(records[i]->message_channel_menu_string(), QStringLiteral("16"));
        EXPECT_EQ(records[i]->message_controller_number_code_string(), QStringLiteral("127"));
        EXPECT_EQ(state.record(i), records[i]);
    }
    EXPECT_EQ(state.record(36), nullptr);
    EXPECT_EQ(state.record(-1), nullptr);
    // Every record has its own identifier.
    QSet<QUuid> ids;
    for (const CreateSetupAreaViewData* r : records)
        ids.insert(r->id());
    EXPECT_EQ(ids.size(), 36);
}

TEST(GlobalStateTest, StartsWithInstructionTextFirstSerialAndPanelRecord)
{
    GlobalState state;
    EXPECT_EQ(state.fullText(),
              QStringLiteral("说明:  \n0.选择型号\n1.输入参数\n2.单点设置(首选)\n   或使用 全部设置\n\n"
                             "注: 每个区域都有独立\n设置按钮 \nC27为设置即保存型\n不需要手动保存到硬件"));
    EXPECT_FALSE(state.fullText().endsWith(u'\n'));
    EXPECT_EQ(state.machine_type_menu_string(), QStringLiteral("4AC0CC27"));
    ASSERT_NE(state.ConfigAreaData(), nullptr);
    EXPECT_EQ(state.ConfigAreaData()->knob_index(), 0);
}

TEST(GlobalStateTest, RecordsCreatedWithTheSameIndexAreUnequal)
{
    CreateSetupAreaViewData a(4), b(4);
    EXPECT_FALSE(a == b);
    EXPECT_NE(qHash(a), qHash(b));
    EXPECT_NE(std::hash<CreateSetupAreaViewData>()(a), std::hash<CreateSetupAreaViewData>()(b));
    CreateConfigAreaViewData c(0), d(0);
    EXPECT_FALSE(c == d);
    EXPECT_NE(qHash(c), qHash(d));
}

TEST(GlobalStateTest, RecordStaysEqualToItselfWhenItsFieldsChange)
{
    CreateSetupAreaViewData a(2);
    const size_t hash_before = qHash(a);
    a.set_message_type_menu_string(NOTE_OFF);
    a.set_message_channel_menu_string("3");
    a.set_message_controller_number_code_string("");
    a.set_knob_index(17);
    EXPECT_TRUE(a == a);
    EXPECT_EQ(qHash(a), hash_before);
}

TEST(GlobalStateTest, EqualityAndHashFollowTheIdOnly)
{
    CreateSetupAreaViewData a(1), b(9);
    b.set_message_type_menu_string(BEND_CHANGE);
    b.setId(a.id());
    EXPECT_TRUE(a == b);
    EXPECT_EQ(qHash(a), qHash(b));
    EXPECT_EQ(qHash(a, 7), qHash(b, 7));
    EXPECT_EQ(std::hash<CreateSetupAreaViewData>()(a), std::hash<CreateSetupAreaViewData>()(b));
    EXPECT_EQ(qHash(a), qHash(a.id()));

    // Same settings, different identifiers: unequal.
    CreateSetupAreaViewData c(1), d(1);
    EXPECT_FALSE(c == d);

    CreateConfigAreaViewData e(0), f(5);
    f.setId(e.id());
    EXPECT_TRUE(e == f);
    EXPECT_EQ(qHash(e), qHash(f));
    EXPECT_EQ(std::hash<CreateConfigAreaViewData>()(e), std::hash<CreateConfigAreaViewData>()(f));
}

TEST(GlobalStateTest, SettingTheIdIsNotAnnounced)
{
    CreateSetupAreaViewData a(0);
    QSignalSpy will(&a, &CreateSetupAreaViewData::objectWillChange);
    QSignalSpy id_changed(&a, &CreateSetupAreaViewData::idChanged);
    const QUuid id = QUuid::createUuid();
    a.setId(id);
    EXPECT_EQ(a.id(), id);
    EXPECT_EQ(will.count(), 0);
    EXPECT_EQ(id_changed.count(), 1);
}

TEST(GlobalStateTest, MachineTypeArrayHoldsTheSixteenSerials)
{
    const QStringList& serials = machine_type_array();
    ASSERT_EQ(serials.size(), 16);
    EXPECT_EQ(serials[0], "4AC0CC27");
    EXPECT_EQ(serials[9], "4AC9CC27");
    EXPECT_EQ(serials[10], "4ACACC27");
    EXPECT_EQ(serials[15], "4ACFCC27");
    const char digits[] = "0123456789ABCDEF";
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(serials[i], QStringLiteral("4AC") + QChar(digits[i]) + QStringLiteral("CC27"));
    EXPECT_EQ(&machine_type_array(), &serials);  // built once
}

TEST(GlobalStateTest, VocabularyTexts)
{
    EXPECT_EQ(NOTE_ON, "Note On");
    EXPECT_EQ(NOTE_OFF, "Note Off");
    EXPECT_EQ(CONTROL_CHANGE, "Control Change");
    EXPECT_EQ(BEND_CHANGE, "Bend Change");
    EXPECT_EQ(SYSTEM_CHANGE, "System Change");
    EXPECT_EQ(Default_TYPE_STRING, QStringLiteral("选择消息类型"));
}

TEST(GlobalStateTest, HandoverValuesStartAtTheirInitialValues)
{
    EXPECT_EQ(ShellCommandPath, "  ");
    EXPECT_EQ(command_setup_succeed_flag, 0);
    EXPECT_EQ(c_arg_transfer_Uint32, 0u);
    EXPECT_EQ(c_arg_transfer_UInt8_1, 0);
    EXPECT_EQ(c_arg_transfer_UInt8_2, 0);
    EXPECT_EQ(c_arg_transfer_UInt8_3, 0);
    EXPECT_EQ(c_arg_transfer_UInt8_4, 0);
    EXPECT_EQ(device_connect_state_retval, std::vector<uint8_t>(36, 0));
}

// Records, for one object, the value a getter returned each time the object
// announced a change, and each time the field's own signal fired.
template <typename Object, typename Getter>
struct AnnouncementLog {
    AnnouncementLog(Object* object, Getter getter, void (Object::*changed)())
    {
        will_ = QObject::connect(object, &Object::objectWillChange,
                                 [=, this] { seen_before.append((object->*getter)()); });
        changed_ = QObject::connect(object, changed, [=, this] { seen_after.append((object->*getter)()); });
    }
    ~AnnouncementLog()
    {
        QObject::disconnect(will_);
        QObject::disconnect(changed_);
    }
    AnnouncementLog(const AnnouncementLog&) = delete;
    AnnouncementLog& operator=(const AnnouncementLog&) = delete;
    QMetaObject::Connection will_, changed_;
    QList<std::decay_t<std::invoke_result_t<Getter, Object*>>> seen_before, seen_after;
};

template <typename Object, typename Getter, typename Setter, typename T>
void expect_announced_before_store(Object* object, Getter getter, Setter setter, void (Object::*changed)(),
                                   const T& first, const T& second)
{
    const T old_value = (object->*getter)();
    AnnouncementLog log(object, getter, changed);
    (object->*setter)(first);
    (object->*setter)(first);  // the same value again still announces
    (object->*setter)(second);
    ASSERT_EQ(log.seen_before.size(), 3);
    EXPECT_EQ(log.seen_before[0], old_value);  // the announcement comes before the store
    EXPECT_EQ(log.seen_before[1], first);
    EXPECT_EQ(log.seen_before[2], first);
    ASSERT_EQ(log.seen_after.size(), 3);
    EXPECT_EQ(log.seen_after[0], first);
    EXPECT_EQ(log.seen_after[1], first);
    EXPECT_EQ(log.seen_after[2], second);
    EXPECT_EQ((object->*getter)(), second);
}

TEST(GlobalStateTest, KnobRecordFieldsAnnounceBeforeStoringEvenWhenEqual)
{
    CreateSetupAreaViewData r(3);
    expect_announced_before_store(&r, &CreateSetupAreaViewData::knob_index, &CreateSetupAreaViewData::set_knob_index,
                                  &CreateSetupAreaViewData::knob_indexChanged, 8, 9);
    expect_announced_before_store(&r, &CreateSetupAreaViewData::message_type_menu_string,
                                  &CreateSetupAreaViewData::set_message_type_menu_string,
                                  &CreateSetupAreaViewData::message_type_menu_stringChanged, NOTE_ON, NOTE_ON);
    expect_announced_before_store(&r, &CreateSetupAreaViewData::message_channel_menu_string,
                                  &CreateSetupAreaViewData::set_message_channel_menu_string,
                                  &CreateSetupAreaViewData::message_channel_menu_stringChanged, QString("16"),
                                  QString(""));
    expect_announced_before_store(&r, &CreateSetupAreaViewData::message_controller_number_code_string,
                                  &CreateSetupAreaViewData::set_message_controller_number_code_string,
                                  &CreateSetupAreaViewData::message_controller_number_code_stringChanged, QString("05"),
                                  QString("74"));
}

TEST(GlobalStateTest, PanelRecordFieldAnnouncesBeforeStoring)
{
    CreateConfigAreaViewData r(0);
    expect_announced_before_store(&r, &CreateConfigAreaViewData::knob_index, &CreateConfigAreaViewData::set_knob_index,
                                  &CreateConfigAreaViewData::knob_indexChanged, 0, 4);
}

TEST(GlobalStateTest, StateFieldsAnnounceBeforeStoringEvenWhenEqual)
{
    GlobalState state;
    expect_announced_before_store(&state, &GlobalState::fullText, &GlobalState::setFullText,
                                  &GlobalState::fullTextChanged, QString("a"), QString("参数正确"));
    expect_announced_before_store(&state, &GlobalState::machine_type_menu_string,
                                  &GlobalState::set_machine_type_menu_string,
                                  &GlobalState::machine_type_menu_stringChanged, QString("4AC0CC27"),
                                  QString("4AC3CC27"));
    const QList<CreateSetupAreaViewData*> records = state.SetupAreaData();
    QList<CreateSetupAreaViewData*> reversed(records.rbegin(), records.rend());
    expect_announced_before_store(&state, &GlobalState::SetupAreaData, &GlobalState::setSetupAreaData,
                                  &GlobalState::SetupAreaDataChanged, records, reversed);
    CreateConfigAreaViewData other(0, &state);
    expect_announced_before_store(&state, &GlobalState::ConfigAreaData, &GlobalState::setConfigAreaData,
                                  &GlobalState::ConfigAreaDataChanged, state.ConfigAreaData(), &other);
}

TEST(GlobalStateTest, ChangeInsideARecordDoesNotAnnounceTheState)
{
    GlobalState state;
    QSignalSpy state_will(&state, &GlobalState::objectWillChange);
    QSignalSpy record_will(state.record(5), &CreateSetupAreaViewData::objectWillChange);
    state.record(5)->set_message_channel_menu_string("2");
    state.ConfigAreaData()->set_knob_index(3);
    EXPECT_EQ(state_will.count(), 0);
    EXPECT_EQ(record_will.count(), 1);
}

}  // namespace
