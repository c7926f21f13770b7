#include "platform/ado/recordset.h"

#include "platform/ado/detail/recordset_store.h"

namespace zenvora::ado {

Recordset::Recordset(std::unique_ptr<detail::RecordsetStore> store) : store_(std::move(store)) {}
Recordset::~Recordset() = default;

long Recordset::RecordCount() const {
    return store_->RecordCount();
}
bool Recordset::Bof() const {
    return store_->Bof();
}
bool Recordset::Eof() const {
    return store_->Eof();
}
void Recordset::MoveFirst() {
    store_->MoveFirst();
}
void Recordset::MoveLast() {
    store_->MoveLast();
}
void Recordset::MoveNext() {
    store_->MoveNext();
}
void Recordset::MovePrevious() {
    store_->MovePrevious();
}
Bookmark Recordset::GetBookmark() const {
    return store_->GetBookmark();
}
void Recordset::SetBookmark(Bookmark bookmark) {
    store_->SetBookmark(bookmark);
}
long Recordset::Position() const {
    return store_->Position();
}
void Recordset::MoveTo(long position) {
    store_->MoveTo(position);
}
void Recordset::Find(std::string_view criterion) {
    store_->Find(criterion);
}

const std::vector<FieldInfo>& Recordset::Fields() const {
    return store_->Fields();
}
int Recordset::FieldIndex(std::string_view name) const {
    return store_->FieldIndex(name);
}
jet::Value Recordset::Value(int field) const {
    return store_->Value(field);
}
jet::Value Recordset::Value(std::string_view name) const {
    return store_->Value(store_->FieldOf(name));
}
jet::Value Recordset::ValueAt(long position, int field) const {
    return store_->ValueAt(position, field);
}
bool Recordset::IsNull(int field) const {
    return store_->IsNull(field);
}
double Recordset::Number(int field) const {
    return store_->Number(field);
}
std::string_view Recordset::TextView(int field) const {
    return store_->TextView(field);
}
std::string Recordset::Text(int field) const {
    return jet::ValueText(store_->Value(field));
}

void Recordset::SetValue(int field, const jet::Value& value) {
    store_->SetValue(field, value);
}
void Recordset::SetValue(std::string_view name, const jet::Value& value) {
    store_->SetValue(store_->FieldOf(name), value);
}
void Recordset::AddNew() {
    store_->AddNew();
}
EditMode Recordset::Edit() const {
    return store_->Edit();
}
void Recordset::Update() {
    store_->Update();
}
void Recordset::CancelUpdate() {
    store_->CancelUpdate();
}
void Recordset::Delete() {
    store_->Delete();
}
void Recordset::BeginBatch() {
    store_->BeginBatch();
}
void Recordset::EndBatch() {
    store_->EndBatch();
}

}  // namespace zenvora::ado
