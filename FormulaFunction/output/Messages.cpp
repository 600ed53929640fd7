// Alerts raised on the newest bar, comments attached to a strategy's bars, the one
// typed field of a kind-3 formula, and the name of the running formula.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/output/OutputValues.h"
#include "FormulaFunction/platform/Platform.h"

namespace {

using ffoutput::kDefaultColour;
using ff::kInvalidNumeric;
using ff::kInvalidString;

// Kinds 3 to 6 each keep their own alert list and formula name.
bool KeepsAlertsAndName(int32_t kind) { return kind >= 3 && kind <= 6; }

void SetFieldColour(tagFieldValue& field, int32_t colour) {
    field.bColourSet = colour != kDefaultColour;
    field.nColour = colour;
}

// The one field belongs to kind-3 formulas only; its name is just checked for
// validity, since such a formula has exactly one field.
tagFieldValue* FieldOf(CKelBaseData* data, const std::string& name) {
    if (data == nullptr || ffoutput::IsInvalidText(name) || data->FormulaKind != 3)
        return nullptr;
    return &data->FieldValue;
}

}  // namespace

// An alert is raised only on the newest bar, only when the user allowed alerts for
// this formula, and once per text: a text already raised in other letter case
// counts as the same alert.
void CSystemFuncs::Alert(const std::string& message) {
    if (m_pBaseData == nullptr || ffoutput::IsInvalidText(message)) return;
    const int64_t barCount = BarCount();
    CKelBaseData& data = *m_pBaseData;
    if (!KeepsAlertsAndName(data.FormulaKind)) return;
    if (!data.AlertEnabled || static_cast<int64_t>(CurrentBar()) + 1 != barCount) return;
    for (const std::string& raised : data.Alerts)
        if (ffplatform::CompareNoCaseGbk(raised, message) == 0) return;
    data.Alerts.push_back(message);
}

// Kind 3 records alerts but answers false here: only the kinds linked to a strategy
// report their switch.
bool CSystemFuncs::AlertEnabled() {
    if (m_pBaseData == nullptr) return false;
    const int32_t kind = m_pBaseData->FormulaKind;
    return (kind == 4 || kind == 5 || kind == 6) && m_pBaseData->AlertEnabled;
}

// Every call adds its text to the current bar of a strategy, duplicates and "N/A"
// included, growing the per-bar lists up to the current bar.
void CSystemFuncs::Commentary(const std::string& text) {
    if (m_pBaseData == nullptr || m_pBaseData->FormulaKind != 7) return;
    const int32_t bar = CurrentBar();
    if (bar < 0) return;
    std::vector<std::vector<std::string>>& texts = m_pBaseData->BarTexts;
    const size_t index = static_cast<size_t>(bar);
    if (texts.size() < index + 1) texts.resize(index + 1);
    texts[index].push_back(text);
}

bool CSystemFuncs::FieldBool(const std::string& name, bool value, int32_t colour) {
    tagFieldValue* field = FieldOf(m_pBaseData, name);
    if (field == nullptr) return false;
    field->nKind = KelBool;
    field->bBoolSet = true;
    field->bBoolValue = value;
    SetFieldColour(*field, colour);
    return value;
}

double CSystemFuncs::FieldNumeric(const std::string& name, double value, int32_t colour) {
    tagFieldValue* field = FieldOf(m_pBaseData, name);
    if (field == nullptr) return kInvalidNumeric;
    field->nKind = KelDouble;
    field->bNumericSet = value != kInvalidNumeric;
    field->dNumeric = value;
    SetFieldColour(*field, colour);
    return value;
}

std::string CSystemFuncs::FieldString(const std::string& name, const std::string& value,
                                      int32_t colour) {
    tagFieldValue* field = FieldOf(m_pBaseData, name);
    if (field == nullptr) return kInvalidString;
    field->nKind = KelText;
    field->bTextSet = !ffoutput::IsInvalidText(value);
    field->strText = value;
    SetFieldColour(*field, colour);
    return value;
}

// Kinds 3 to 6 carry their own name; a strategy names itself through its entry in
// the list of the strategy's formulas.
std::string CSystemFuncs::FormulaName() {
    if (m_pBaseData == nullptr) return kInvalidString;
    const CKelBaseData& data = *m_pBaseData;
    if (KeepsAlertsAndName(data.FormulaKind)) return data.FormulaNameText;
    if (data.FormulaKind == 7) {
        const uint32_t entry = static_cast<uint32_t>(data.FormulaEntryIndex);
        if (entry < data.FormulaEntries.size()) return data.FormulaEntries[entry].Name;
    }
    return kInvalidString;
}
