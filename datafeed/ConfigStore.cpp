#include "datafeed/ConfigStore.h"

#include "datafeed/Database.h"

namespace datafeed {

bool ConfigStore::Get(const std::string& table, const std::string& section,
                      const std::string& key, std::string& value) {
    Statement select(db_, "SELECT value FROM config WHERE tbl = ?1 AND section = ?2 AND key = ?3");
    select.BindText(1, table).BindText(2, section).BindText(3, key);
    if (!select.Step()) {
        value.clear();
        return false;
    }
    value = select.Text(0);
    return true;
}

void ConfigStore::Set(const std::string& table, const std::string& section,
                      const std::string& key, const std::string& value) {
    Transaction transaction(db_, Transaction::Write);
    Statement upsert(db_,
                     "INSERT INTO config (tbl, section, key, value) VALUES (?1, ?2, ?3, ?4) "
                     "ON CONFLICT (tbl, section, key) DO UPDATE SET value = excluded.value");
    upsert.BindText(1, table).BindText(2, section).BindText(3, key).BindText(4, value);
    upsert.Run();
    transaction.Commit();
}

}  // namespace datafeed
