#include "platform/sqlite/SqliteStatements.h"

#include <algorithm>
#include <utility>

#include "text/TextTools.h"

namespace mip {
namespace {

/// More than this program has; who uses others makes room for them.
constexpr std::size_t MaximumCompiled = 16;

/// Appends the rest of a literal, behind its first quote, and takes it off the text. False when it does not end.
bool TakeLiteral(std::string_view& sql, std::string& values) {
    for (std::size_t quote = sql.find('\''); quote != std::string_view::npos; quote = sql.find('\'')) {
        values.append(sql.substr(0, quote));
        sql.remove_prefix(quote + 1);
        if (!sql.starts_with('\'')) {
            return true;
        }
        values += '\'';
        sql.remove_prefix(1);
    }
    return false;
}

}  // namespace

bool SqliteTemplate::Take(std::string_view sql) {
    Text.clear();
    Values.clear();
    Ends.clear();
    if (sql.find('\0') != std::string_view::npos) {
        return false;
    }
    for (std::size_t quote = sql.find('\''); quote != std::string_view::npos; quote = sql.find('\'')) {
        Text.append(sql.substr(0, quote)) += '?';
        sql.remove_prefix(quote + 1);
        if (!TakeLiteral(sql, Values)) {
            return false;
        }
        Ends.push_back(Values.size());
    }
    Text.append(sql);
    return true;
}

SqliteRun::SqliteRun(sqlite3_stmt* statement, const SqliteTemplate& parts) : statement_(statement) {
    std::size_t begin = 0;
    for (std::size_t index = 0; index < parts.Ends.size(); ++index) {
        const std::size_t end = parts.Ends[index];
        const int code = sqlite3_bind_text(statement_, static_cast<int>(index + 1), parts.Values.data() + begin,
                                           static_cast<int>(end - begin), SQLITE_STATIC);
        if (code != SQLITE_OK) {
            throw SqliteError("sqlite3_bind_text", FromUtf8(parts.Text), sqlite3_db_handle(statement_));
        }
        begin = end;
    }
}

SqliteRun::~SqliteRun() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

SqliteRun SqliteStatements::Start(const std::wstring& sql) {
    if (sqlite3_stmt* statement = parts_.Take(ToUtf8(sql)) ? Find() : nullptr) {
        return {statement, parts_};
    }
    single_ = PrepareStatement(database_, sql);
    return SqliteRun(single_.get());
}

/// The compiled statement; null where a literal stands that is no value, or what looks like one is a part of something
/// else: then the parameters are not as many.
sqlite3_stmt* SqliteStatements::Find() {
    const std::string& text = parts_.Text;
    const auto kept = std::ranges::find(compiled_, text, &Compiled::Text);
    if (kept != compiled_.end()) {
        return kept->Statement.get();
    }
    sqlite3_stmt* statement = nullptr;
    const char* rest = nullptr;
    sqlite3_prepare_v2(database_, text.c_str(), static_cast<int>(text.size() + 1), &statement, &rest);
    SqliteStatement compiled(statement);
    if (!compiled || *rest != '\0' ||
        static_cast<std::size_t>(sqlite3_bind_parameter_count(compiled.get())) != parts_.Ends.size()) {
        return nullptr;
    }
    if (compiled_.size() == MaximumCompiled) {
        compiled_.erase(compiled_.begin());
    }
    return compiled_.emplace_back(Compiled{text, std::move(compiled)}).Statement.get();
}

}  // namespace mip
