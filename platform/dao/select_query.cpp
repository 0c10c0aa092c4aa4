#include "platform/dao/select_query.h"

#include "platform/code_page.h"
#include "platform/dao/value.h"
#include "platform/jet/errors.h"

namespace dao {

namespace {

using jet::DataError;

constexpr std::u16string_view MissingOperator = u"Syntax error (missing operator)";
constexpr std::u16string_view OpenString = u"Syntax error in string";

bool IsBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

std::u16string_view WithoutTrailingBlanks(std::u16string_view text) {
    const std::size_t last = text.find_last_not_of(u' ');
    return text.substr(0, last == std::u16string_view::npos ? 0 : last + 1);
}

/// Takes a query apart from its front.
class Scanner {
  public:
    explicit Scanner(std::u16string_view source) : mRest(source), mExpression(source) { SkipBlanks(); }

    /// A keyword or sign.
    bool Take(std::u16string_view word) {
        if (!platform::EqualFolded(mRest.substr(0, word.size()), word)) return false;
        mRest.remove_prefix(word.size());
        SkipBlanks();
        return true;
    }

    void Expect(std::u16string_view word) {
        if (!Take(word)) Fail(MissingOperator);
    }

    /// A name, in brackets or up to the next blank or sign.
    std::u16string Name() {
        const bool bracketed = mRest.starts_with(u'[');
        if (bracketed) mRest.remove_prefix(1);
        const std::size_t end = mRest.find_first_of(bracketed ? u"]" : u" \t\r\n=");
        if (end == 0 || end == std::u16string_view::npos) Fail(MissingOperator);
        std::u16string name(mRest.substr(0, end));
        mRest.remove_prefix(end + (bracketed ? 1 : 0));
        SkipBlanks();
        return name;
    }

    std::u16string QuotedText() {
        if (!mRest.starts_with(u'\'')) Fail(MissingOperator);
        std::u16string text;
        do {
            mRest.remove_prefix(1);
            const std::size_t quote = mRest.find(u'\'');
            if (quote == std::u16string_view::npos) Fail(OpenString);
            text += mRest.substr(0, quote + 1);
            mRest.remove_prefix(quote + 1);
        } while (mRest.starts_with(u'\''));
        text.pop_back();
        SkipBlanks();
        return text;
    }

    /// What follows is the expression that an error names.
    void BeginExpression() { mExpression = mRest; }

    void ExpectEnd() {
        if (!mRest.empty()) Fail(MissingOperator);
    }

  private:
    [[noreturn]] void Fail(std::u16string_view reason) const {
        throw DataError(jet::QuerySyntax, reason, mExpression);
    }

    void SkipBlanks() {
        while (!mRest.empty() && IsBlank(mRest.front())) mRest.remove_prefix(1);
    }

    std::u16string_view mRest;
    std::u16string_view mExpression;
};

}  // namespace

bool IsQuery(std::u16string_view source) {
    Scanner scanner(source);
    return scanner.Take(u"select ");
}

SelectQuery ParseQuery(std::u16string_view source) {
    Scanner scanner(source);
    SelectQuery query;
    scanner.Expect(u"select");
    scanner.Expect(u"*");
    scanner.Expect(u"from");
    query.Table = scanner.Name();
    scanner.Expect(u"where");
    scanner.BeginExpression();
    query.Column = scanner.Name();
    scanner.Expect(u"=");
    query.Text = scanner.QuotedText();
    scanner.ExpectEnd();
    return query;
}

std::vector<jet::RowPointer> RowsOf(const SelectQuery& query, const jet::Table& table) {
    const jet::TableDef& definition = table.Definition();
    const auto column = definition.FindColumn(query.Column);
    if (!column) throw DataError(jet::TooFewParameters, u"1");
    const jet::ColumnType type = definition.Columns[*column].Type;
    if (type != jet::ColumnType::Text && type != jet::ColumnType::Memo) throw DataError(jet::DataConversion);

    const std::u16string_view sought = WithoutTrailingBlanks(query.Text);
    std::vector<jet::RowPointer> rows;
    for (auto row = table.FirstRow(); row; row = table.NextRow(*row)) {
        const Value value = table.ReadColumn(*row, *column);
        const auto* text = std::get_if<std::u16string>(&value);
        if (text != nullptr && platform::EqualFolded(WithoutTrailingBlanks(*text), sought))
            rows.push_back(*row);
    }
    return rows;
}

}  // namespace dao
