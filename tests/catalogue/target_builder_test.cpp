#include "catalogue/target_builder.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "catalogue/metadata_catalogue.h"
#include "platform/code_page.h"
#include "tests/catalogue/catalogue_fixture.h"

namespace {

class TargetBuilder : public test::CatalogueFixture {
  protected:
    TargetBuilder() {
        Catalogue->AddMap({.TableName = u"T1"});
        Catalogue->AddKey({.Name = u"X"});
        Catalogue->AddField(u"T1", u"Number", u"U", 2, 1);
        Catalogue->AddField(u"T1", u"Name", u"A", 30, 3);
    }

    void Build() {
        StartCatalogue();
        catalogue::BuildTargetDatabase(State, TargetFile.string());
    }

    static std::string Described(const std::vector<dao::Field>& fields) {
        std::string text;
        for (const dao::Field& field : fields) {
            text += platform::Utf8FromWide(field.Name) + ":" + std::to_string(static_cast<int>(field.Type));
            if (field.Type == dao::FieldType::Text) text += ":" + std::to_string(field.Size);
            text += " ";
        }
        return text;
    }

    std::string ColumnsOf(const std::u16string& table) {
        return Described(State.TargetDatabase->TableDefs().Item(table)->Fields());
    }

    std::string IndexesOf(const std::u16string& table) {
        const auto definition = State.TargetDatabase->TableDefs().Item(table);
        const dao::Indexes& indexes = definition->Indexes();
        std::string text;
        for (int position = 0; position < indexes.Count(); ++position) {
            const dao::Index& index = indexes.Item(position);
            text += platform::Utf8FromWide(index.Name) + (index.Primary() ? " primary" : "") +
                    (index.Unique ? " unique" : "") + " (";
            for (const dao::Field& column : index.Fields) {
                text += platform::Utf8FromWide(column.Name);
                text += column.Attributes == dao::DescendingField ? "- " : "+ ";
            }
            text += ") ";
        }
        return text;
    }
};

TEST_F(TargetBuilder, EveryTableGetsItsColumnsInOrder) {
    Catalogue->AddField(u"T2", u"Long text", u"A", 300, 1);
    Catalogue->AddField(u"T1", u"Price", u"M", 3, 33);
    Catalogue->AddField(u"T2", u"Compressed", u"C", 5, 1);
    Catalogue->AddField(u"T2", u"Factor", u"I", 2, 1, 2);
    Catalogue->AddField(u"T2", u"Any length", u"A", 0, 1);
    Catalogue->AddField(u"T2", u"Since", u"J", 2, 1);
    Catalogue->AddIndexColumn(u"T1", u"ByNumber", u"Number", true);
    Build();

    EXPECT_EQ(State.TargetDatabase->TableDefs().Names(), (std::vector<std::u16string>{u"T1", u"T2"}));
    EXPECT_EQ(ColumnsOf(u"T1"), "Number:4 Name:10:30 Price:5 ");
    EXPECT_EQ(ColumnsOf(u"T2"), "Long text:12 Compressed:10:10 Factor:6 Any length:10:255 Since:8 ");
    EXPECT_EQ(State.TargetDatabase->OpenRecordset(u"T2")->RecordCount(), 0);
}

TEST_F(TargetBuilder, EveryRunOfIndexRowsGivesOneIndex) {
    Catalogue->AddField(u"T2", u"Number", u"U", 2, 1);
    Catalogue->AddIndexColumn(u"T1", u"ByName", u"Name", false, true);
    Catalogue->AddIndexColumn(u"T1", u"ByName", u"Number", false, false, true);
    Catalogue->AddIndexColumn(u"T1", u"Key", u"Number", true, false);
    Catalogue->AddIndexColumn(u"T2", u"Key", u"Number", false, false);
    Build();

    EXPECT_EQ(IndexesOf(u"T1"), "ByName unique (Name+ Number- ) Key primary unique (Number+ ) ");
    EXPECT_EQ(IndexesOf(u"T2"), "Key (Number+ ) ");
}

TEST_F(TargetBuilder, TheSchemaIsInTheFile) {
    Catalogue->AddIndexColumn(u"T1", u"Key", u"Number", true);
    Build();
    State.TargetDatabase->Close();
    State.TargetDatabase = dao::OpenDatabase(TargetFile.string());
    EXPECT_EQ(ColumnsOf(u"T1"), "Number:4 Name:10:30 ");
    EXPECT_EQ(IndexesOf(u"T1"), "Key primary unique (Number+ ) ");
}

TEST_F(TargetBuilder, NoRelationsAreMadeWhateverTheMenuSays) {
    Catalogue->AddIndexColumn(u"T1", u"Key", u"Number", true);
    Catalogue->AddRelation(u"R", u"T1", u"T1", 1, u"Number", u"Number");
    State.EnforceReferentialIntegrity = true;
    Build();
    EXPECT_EQ(State.TargetDatabase->Relations().Count(), 0);
}

}  // namespace
