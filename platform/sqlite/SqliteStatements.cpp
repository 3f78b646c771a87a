#include "platform/sqlite/SqliteStatements.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "text/TextTools.h"

namespace mip {
namespace {

/// More than this program has; who uses others makes room for them.
constexpr std::size_t MaximumCompiled = 16;

struct Template {
    std::string Text;                 ///< with "?" for each text literal
    std::vector<std::string> Values;  ///< the literals' texts
};

/// Takes the rest of a literal, behind its first quote, off the text. Nothing when it does not end.
std::optional<std::string> TakeLiteral(std::string_view& text) {
    std::string value;
    for (std::size_t quote = text.find('\''); quote != std::string_view::npos; quote = text.find('\'')) {
        value.append(text.substr(0, quote));
        text.remove_prefix(quote + 1);
        if (!text.starts_with('\'')) {
            return value;
        }
        value += '\'';
        text.remove_prefix(1);
    }
    return std::nullopt;
}

/// Nothing for a text that cannot be a statement.
std::optional<Template> TakeLiterals(std::string_view text) {
    if (text.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    constexpr std::size_t UsualValues = 16;
    Template result;
    result.Text.reserve(text.size());
    result.Values.reserve(UsualValues);
    for (std::size_t quote = text.find('\''); quote != std::string_view::npos; quote = text.find('\'')) {
        result.Text.append(text.substr(0, quote)) += '?';
        text.remove_prefix(quote + 1);
        std::optional<std::string> value = TakeLiteral(text);
        if (!value) {
            return std::nullopt;
        }
        result.Values.push_back(std::move(*value));
    }
    result.Text.append(text);
    return result;
}

}  // namespace

SqliteRun::SqliteRun(sqlite3_stmt* statement, std::vector<std::string> values)
    : statement_(statement), values_(std::move(values)) {
    for (std::size_t index = 0; index < values_.size(); ++index) {
        const std::string& value = values_[index];
        const int code = sqlite3_bind_text(statement_, static_cast<int>(index + 1), value.data(),
                                           static_cast<int>(value.size()), SQLITE_STATIC);
        if (code != SQLITE_OK) {
            throw SqliteError("sqlite3_bind_text", FromUtf8(value), sqlite3_db_handle(statement_));
        }
    }
}

SqliteRun::~SqliteRun() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

SqliteRun SqliteStatements::Start(const std::wstring& sql) {
    std::optional<Template> found = TakeLiterals(ToUtf8(sql));
    if (sqlite3_stmt* statement = found ? Find(found->Text, found->Values.size()) : nullptr) {
        return {statement, std::move(found->Values)};
    }
    single_ = PrepareStatement(database_, sql);
    return {single_.get(), {}};
}

/// The compiled statement; null where a literal stands that is no value, or what looks like one is a part of something
/// else: then the parameters are not as many.
sqlite3_stmt* SqliteStatements::Find(const std::string& text, std::size_t parameters) {
    const auto kept = std::ranges::find(compiled_, text, &Compiled::Text);
    if (kept != compiled_.end()) {
        return kept->Statement.get();
    }
    sqlite3_stmt* statement = nullptr;
    const char* rest = nullptr;
    sqlite3_prepare_v2(database_, text.c_str(), static_cast<int>(text.size() + 1), &statement, &rest);
    SqliteStatement compiled(statement);
    if (!compiled || *rest != '\0' ||
        static_cast<std::size_t>(sqlite3_bind_parameter_count(compiled.get())) != parameters) {
        return nullptr;
    }
    if (compiled_.size() == MaximumCompiled) {
        compiled_.erase(compiled_.begin());
    }
    return compiled_.emplace_back(Compiled{text, std::move(compiled)}).Statement.get();
}

}  // namespace mip
