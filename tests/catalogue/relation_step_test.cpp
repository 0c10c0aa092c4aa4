// The builder compiled with its relation step switched on: the relations that a target database then holds.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "catalogue/target_builder.h"
#include "tests/catalogue/catalogue_fixture.h"

namespace {

class RelationStep : public test::CatalogueFixture, public testing::WithParamInterface<bool> {};

TEST_P(RelationStep, EveryRunOfRowsGivesOneRelation) {
    const bool enforced = GetParam();
    Catalogue->AddMap({.TableName = u"T1"});
    Catalogue->AddKey({.Name = u"X"});
    for (const char16_t* const name : {u"Number", u"Name"}) Catalogue->AddField(u"T1", name, u"U", 2, 1);
    for (const char16_t* const name : {u"Owner", u"OwnerName"}) Catalogue->AddField(u"T2", name, u"U", 2, 1);
    Catalogue->AddIndexColumn(u"T1", u"Key", u"Number", true);
    Catalogue->AddRelation(u"First", u"T1", u"T2", 1, u"Number", u"Owner");
    Catalogue->AddRelation(u"First", u"T1", u"T2", 1, u"Name", u"OwnerName");
    Catalogue->AddRelation(u"Second", u"T2", u"T1", 0, u"Owner", u"Number");
    Catalogue->AddRelation(u"Third", u"T2", u"T1", {}, u"Owner", u"Name");
    StartCatalogue();
    State.EnforceReferentialIntegrity = enforced;
    catalogue::BuildTargetDatabase(State, TargetFile.string());
    EXPECT_EQ(State.TargetDatabase->Relations().Count(), 3);
    State.TargetDatabase->Close();

    // Columns, attributes (1: one to one, 2: not enforced), place; foreign column and table, column and
    // table.
    const std::string one = enforced ? "1" : "3";
    const std::string many = enforced ? "0" : "2";
    EXPECT_EQ(RowsOf(TargetFile, u"MSysRelationships"),
              (std::vector<std::string>{
                  "2|" + one + "|0|Owner|T2|Number|T1|First", "2|" + one + "|1|OwnerName|T2|Name|T1|First",
                  "1|" + many + "|0|Number|T1|Owner|T2|Second", "1|" + many + "|0|Name|T1|Owner|T2|Third"}));
}

INSTANTIATE_TEST_SUITE_P(Enforced, RelationStep, testing::Bool());

}  // namespace
