#include "platform/dao/recordset.h"

#include <functional>
#include <gmock/gmock.h>

#include "tests/dao/dao_fixture.h"

namespace dao {
namespace {

using testing::ElementsAre;

class Recordsets : public test::DaoFixture {
  protected:
    void SetUp() override {
        MakeTable(u"Towns",
                  {{u"Id", FieldType::Long},
                   {u"Town", FieldType::Text, 20},
                   {u"Note", FieldType::Memo},
                   {u"Open", FieldType::Boolean},
                   {u"Rate", FieldType::Currency}},
                  {{u"PrimaryKey", {u"Id"}, true},
                   {u"ByTown", {u"Town"}, false, false, true},
                   {u"ByRate", {u"Rate", u"Id"}, false, true}});
        mRows = mDatabase->OpenRecordset(u"Towns");
    }

    void AddThree() {
        Add(*mRows, {30, u"Oslo"});
        Add(*mRows, {10, u"Århus", u"a note", true, 2.5});
        Add(*mRows, {20, u"bergen", Null{}, false, 1.25});
    }

    int Raised(const std::function<void()>& call) { return test::ErrorOf(call).Number; }

    std::shared_ptr<Recordset> mRows;
};

// Walking

TEST_F(Recordsets, AnEmptyTableIsAtItsEnd) {
    EXPECT_TRUE(mRows->AtEnd());
    EXPECT_EQ(mRows->RecordCount(), 0);
    EXPECT_EQ(Raised([&] { mRows->MoveFirst(); }), 3021);
    EXPECT_EQ(Raised([&] { mRows->MoveNext(); }), 3021);
    EXPECT_EQ(Raised([&] { mRows->Edit(); }), 3021);
    EXPECT_EQ(Raised([&] { mRows->Fields(u"Id").GetValue(); }), 3021);
}

TEST_F(Recordsets, RowsComeInPhysicalOrderUntilAnIndexIsNamed) {
    AddThree();
    const auto opened = mDatabase->OpenRecordset(u"TOWNS");
    EXPECT_EQ(opened->Fields(0).GetValue(), Value(30)) << "it stands on the first row";
    EXPECT_EQ(opened->RecordCount(), 3);
    EXPECT_THAT(ColumnValues(*mRows, u"Id"), ElementsAre(Value(30), Value(10), Value(20)));
    EXPECT_EQ(Raised([&] { mRows->MoveNext(); }), 3021) << "behind the last row";
    mRows->SetIndex(u"primarykey");
    EXPECT_THAT(ColumnValues(*mRows, u"Id"), ElementsAre(Value(10), Value(20), Value(30)));
    mRows->SetIndex(u"ByTown");
    EXPECT_THAT(ColumnValues(*mRows, u"Town"),
                ElementsAre(Value(u"Oslo"), Value(u"bergen"), Value(u"Århus")));
    mRows->SetIndex(u"ByRate");
    EXPECT_THAT(ColumnValues(*mRows, u"Id"), ElementsAre(Value(30), Value(20), Value(10))) << "Null first";
    const platform::Error error = test::ErrorOf([&] { mRows->SetIndex(u"ByColour"); });
    EXPECT_EQ(error.Number, 3800);
    EXPECT_EQ(error.Description, "'ByColour' is not an index in this table.");
}

TEST_F(Recordsets, ARowAddedWhileWalkingComesAtItsPlace) {
    AddThree();
    mRows->SetIndex(u"PrimaryKey");
    mRows->MoveFirst();
    Add(*mRows, {15, u"Tromsø"});
    EXPECT_EQ(mRows->Fields(u"Id").GetValue(), Value(10)) << "adding leaves the current row";
    mRows->MoveNext();
    EXPECT_EQ(mRows->Fields(u"Id").GetValue(), Value(15));
}

TEST_F(Recordsets, SeekFindsTheFirstRowOfAKey) {
    AddThree();
    EXPECT_EQ(Raised([&] { mRows->Seek("=", 10); }), 3019);
    mRows->SetIndex(u"PrimaryKey");
    mRows->Seek("=", 20.4);  // converted as an assignment would be
    EXPECT_FALSE(mRows->NoMatch());
    EXPECT_EQ(mRows->Fields(u"Town").GetValue(), Value(u"bergen"));
    mRows->MoveNext();
    EXPECT_EQ(mRows->Fields(u"Id").GetValue(), Value(30));

    mRows->Seek("=", 11);
    EXPECT_TRUE(mRows->NoMatch());
    EXPECT_EQ(Raised([&] { mRows->Fields(u"Id").GetValue(); }), 3021);
    mRows->MoveFirst();
    EXPECT_TRUE(mRows->NoMatch()) << "moving does not touch it";

    mRows->SetIndex(u"ByTown");
    for (const std::u16string town : {u"BERGEN", u"Bergen   "}) {
        mRows->Seek("=", town);
        EXPECT_FALSE(mRows->NoMatch());
    }
    mRows->Seek("=", u"Arhus");
    EXPECT_TRUE(mRows->NoMatch()) << "accents count";
    mRows->Seek("=", u"");
    EXPECT_TRUE(mRows->NoMatch());
    mRows->SetIndex(u"ByRate");
    const std::vector<Value> key{1.25, 20};
    mRows->Seek("=", key);
    EXPECT_FALSE(mRows->NoMatch());
    EXPECT_EQ(Raised([&] { mRows->Seek("=", 1.25); }), 3001) << "one value a column";
    EXPECT_EQ(Raised([&] { mRows->Seek(">=", key); }), 3001);
}

// Fields

TEST_F(Recordsets, FieldsAreFoundByNameAndPosition) {
    EXPECT_EQ(mRows->FieldCount(), 5);
    EXPECT_EQ(&mRows->Fields(u"TOWN"), &mRows->Fields(1));
    EXPECT_EQ(mRows->Fields(1).Name(), u"Town");
    EXPECT_EQ(mRows->Fields(1).Size(), 20);
    EXPECT_EQ(mRows->Fields(2).Type(), FieldType::Memo);
    EXPECT_EQ(Raised([&] { mRows->Fields(u"Village"); }), 3265);
    EXPECT_EQ(Raised([&] { mRows->Fields(5); }), 3265);
    EXPECT_EQ(Raised([&] { mRows->Fields(-1); }), 3265);
    AddThree();
    EXPECT_THAT(ColumnValues(*mRows, u"Note"), ElementsAre(Null{}, u"a note", Null{}));
    EXPECT_THAT(ColumnValues(*mRows, u"Rate"), ElementsAre(Null{}, Currency{25000}, Currency{12500}));
}

// Adding and changing

TEST_F(Recordsets, ANewRowIsNullAndItsYesNoColumnsFalse) {
    mRows->AddNew();
    EXPECT_TRUE(IsNull(mRows->Fields(u"Id").GetValue()));
    EXPECT_EQ(mRows->Fields(u"Open").GetValue(), Value(false));
    mRows->Fields(u"Rate").SetValue(u"12.5");
    EXPECT_EQ(mRows->Fields(u"Rate").GetValue(), Value(Currency{125000})) << "converted at once";
    // A refused assignment leaves the former value.
    mRows->Fields(u"Town").SetValue(u"Oslo");
    EXPECT_EQ(Raised([&] { mRows->Fields(u"Town").SetValue(std::u16string(21, u'x')); }), 3163);
    EXPECT_EQ(Raised([&] { mRows->Fields(u"Town").SetValue(u""); }), 3315);
    EXPECT_EQ(Raised([&] { mRows->Fields(u"Id").SetValue(u"ten"); }), 3421);
    EXPECT_EQ(mRows->Fields(u"Town").GetValue(), Value(u"Oslo"));
    EXPECT_TRUE(IsNull(mRows->Fields(u"Id").GetValue()));
}

TEST_F(Recordsets, NothingIsAssignedOrUpdatedOutsideEditing) {
    AddThree();
    const platform::Error error = test::ErrorOf([&] { mRows->Fields(u"Id").SetValue(1); });
    EXPECT_EQ(error.Number, 3020);
    EXPECT_EQ(error.Description,
              "You tried to call Update or CancelUpdate or attempted to update a Field in a recordset "
              "without first calling AddNew or Edit.");
    EXPECT_EQ(Raised([&] { mRows->Update(); }), 3020);
    mRows->MoveFirst();
    Edit(*mRows, {});
    EXPECT_EQ(Raised([&] { mRows->Update(); }), 3020) << "an update ends the editing";
}

TEST_F(Recordsets, ARefusedRowLeavesNothingBehind) {
    AddThree();
    EXPECT_EQ(Raised([&] { Add(*mRows, {10, u"again"}); }), 3022);
    EXPECT_EQ(mRows->Fields(u"Town").GetValue(), Value(u"again")) << "the row is still being edited";
    mRows->Fields(u"Id").SetValue(11);
    mRows->Update();
    EXPECT_EQ(Raised([&] { Add(*mRows, {Null{}, u"no key"}); }), 3058);
    EXPECT_NO_THROW(Add(*mRows, {12, u"same rate", Null{}, false, 1.25})) << "another Id makes another key";
    EXPECT_EQ(mRows->RecordCount(), 5);
    for (const char16_t* index : {u"PrimaryKey", u"ByTown", u"ByRate"}) {
        mRows->SetIndex(index);
        EXPECT_EQ(ColumnValues(*mRows, u"Id").size(), 5U);
    }
}

TEST_F(Recordsets, MovingOrANewRowDropsTheRowBegun) {
    AddThree();
    mRows->MoveFirst();
    mRows->AddNew();
    mRows->Fields(u"Id").SetValue(99);
    mRows->MoveFirst();
    EXPECT_EQ(Raised([&] { mRows->Update(); }), 3020);
    mRows->AddNew();
    mRows->Fields(u"Town").SetValue(u"Lost");
    mRows->AddNew();
    EXPECT_TRUE(IsNull(mRows->Fields(u"Town").GetValue()));
    EXPECT_EQ(mRows->RecordCount(), 3);
}

TEST_F(Recordsets, EditChangesColumnsOfFixedLengthAndTheirIndexes) {
    AddThree();
    mRows->SetIndex(u"PrimaryKey");
    mRows->Seek("=", 20);
    const auto other = mDatabase->OpenRecordset(u"Towns");
    for (int i = 0; i < 2; ++i) other->MoveNext();
    EXPECT_EQ(other->Fields(u"Id").GetValue(), Value(20));
    Edit(*mRows, {{u"Id", 40}, {u"Rate", Null{}}, {u"Open", true}});
    EXPECT_EQ(mRows->Fields(u"Id").GetValue(), Value(40)) << "the row stays current";
    EXPECT_EQ(other->Fields(u"Id").GetValue(), Value(40)) << "another cursor sees the change at once";
    EXPECT_THAT(ColumnValues(*mRows, u"Id"), ElementsAre(Value(10), Value(30), Value(40)));
    EXPECT_THAT(ColumnValues(*mRows, u"Open"), ElementsAre(Value(true), Value(false), Value(true)));

    mRows->MoveFirst();
    EXPECT_EQ(Raised([&] { Edit(*mRows, {{u"Id", 30}}); }), 3022);
    mRows->MoveFirst();
    EXPECT_EQ(mRows->Fields(u"Id").GetValue(), Value(10));
    EXPECT_EQ(Raised([&] { Edit(*mRows, {{u"Id", 11}, {u"Town", u"Aarhus"}}); }), 3251) << "a text";
    mRows->MoveFirst();
    EXPECT_EQ(mRows->Fields(u"Id").GetValue(), Value(10)) << "nothing of the refused change is written";
}

TEST_F(Recordsets, AClosedRecordsetIsNoObjectAnyMore) {
    AddThree();
    RecordsetField& field = mRows->Fields(0);
    mRows->Close();
    EXPECT_EQ(Raised([&] { mRows->MoveFirst(); }), 3420);
    EXPECT_EQ(Raised([&] { field.GetValue(); }), 3420);
    EXPECT_EQ(Raised([&] { mRows->Close(); }), 3420);
}

TEST_F(Recordsets, TextsOfManyRowsDoNotMixThoughTheyShareTheirMemory) {
    std::vector<Value> towns;
    for (int i = 0; i < 300; ++i) {
        towns.push_back(i % 3 == 0 ? Value()
                                   : Value(std::u16string(static_cast<std::size_t>(1 + i % 20), u'a')));
        Add(*mRows, {i, towns.back()});
    }
    mRows->SetIndex(u"PrimaryKey");
    EXPECT_EQ(ColumnValues(*mRows, u"Town"), towns);
}

}  // namespace
}  // namespace dao
