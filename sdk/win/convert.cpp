#include "convert.h"

#include <cstring>

#include "generated_module.h"
#include "v8_compat.h"

namespace orva::binding {
namespace {

// The native buffer behind a proxy of `char` (or of `std::string` when
// `acceptString`), or null when the value is no such proxy.
const char* nativeText(v8::Local<v8::Value> value, bool acceptString, bool* isString) {
  if (!value->IsObject()) return nullptr;
  ProxyRecord* record = recordOf(value.As<v8::Object>());
  if (record == nullptr) return nullptr;
  const Surface& module = generated::surface();
  *isString = false;
  if (record->type == typeAt(module.charTypeIndex)) return static_cast<const char*>(record->ptr);
  if (acceptString && record->type == typeAt(module.stringTypeIndex) && record->ptr != nullptr) {
    *isString = true;
    return static_cast<const std::string*>(record->ptr)->c_str();
  }
  return nullptr;
}

}  // namespace

int asCString(v8::Isolate* isolate, v8::Local<v8::Value> value, Utf8Arg* out) {
  if (value->IsString()) {
    v8::Local<v8::String> text = value.As<v8::String>();
    int length = text->Length();
    // One pass when the worst case (three bytes per UTF-16 unit) fits inline.
    size_t capacity = static_cast<size_t>(length) * 3;
    if (capacity >= sizeof out->inline_) {
      capacity = utf8Length(isolate, text);
      out->data_ = capacity < sizeof out->inline_ ? out->inline_ : new char[capacity + 1];
    } else {
      out->data_ = out->inline_;
    }
    out->data_[writeUtf8(isolate, text, out->data_, capacity)] = '\0';
    return kOk;
  }
  if (value->IsNull()) {
    out->data_ = nullptr;
    return kOk;
  }
  bool isString = false;
  if (const char* native = nativeText(value, false, &isString)) {
    out->borrowed_ = out->data_ = const_cast<char*>(native);
    return kOk;
  }
  return kTypeError;
}

int asStdString(v8::Isolate* isolate, v8::Local<v8::Value> value, std::string* out, bool* isNull) {
  *isNull = false;
  if (value->IsString()) {
    v8::Local<v8::String> text = value.As<v8::String>();
    out->resize(utf8Length(isolate, text));
    writeUtf8(isolate, text, out->data(), out->size());
    return kOk;
  }
  if (value->IsNull()) {
    *isNull = true;
    return kOk;
  }
  bool isString = false;
  if (const char* native = nativeText(value, true, &isString)) {
    *out = native;
    return kOk;
  }
  return kTypeError;
}

namespace {

// V8 refuses a UTF-8 text of more bytes than its longest string before it
// decodes it, although such a text may decode to fewer UTF-16 units (three
// bytes make one unit at most). A longer text is decoded in pieces that each
// fit, cut before a byte that starts a character, and joined; what cannot
// be one script string reads as undefined.
v8::Local<v8::Value> longTextToScript(v8::Isolate* isolate, const char* data, size_t size) {
  constexpr size_t kMaxUnits = v8::String::kMaxLength;
  if (size / 3 > kMaxUnits) return v8::Undefined(isolate);
  v8::Local<v8::String> result = v8::String::Empty(isolate);
  while (size > 0) {
    size_t piece = size < kMaxUnits ? size : kMaxUnits;
    // A character has at most three continuation bytes; a longer run of them
    // is invalid whatever the cut, each byte on its own.
    for (size_t back = 0; piece < size && back <= 3; ++back) {
      if ((static_cast<unsigned char>(data[piece - back]) & 0xC0) != 0x80) {
        piece -= back;
        break;
      }
    }
    v8::Local<v8::String> part;
    if (!v8::String::NewFromUtf8(isolate, data, v8::NewStringType::kNormal, static_cast<int>(piece)).ToLocal(&part)) {
      return v8::Undefined(isolate);
    }
    result = v8::String::Concat(isolate, result, part);
    if (result.IsEmpty()) return v8::Undefined(isolate);
    data += piece;
    size -= piece;
  }
  return result;
}

v8::Local<v8::Value> textToScript(v8::Isolate* isolate, const char* data, size_t size) {
  if (size >= 2147483648u) return v8::Undefined(isolate);
  if (size > static_cast<size_t>(v8::String::kMaxLength)) [[unlikely]] {
    return longTextToScript(isolate, data, size);
  }
  v8::Local<v8::String> result;
  if (!v8::String::NewFromUtf8(isolate, data, v8::NewStringType::kNormal, static_cast<int>(size)).ToLocal(&result)) {
    return v8::Undefined(isolate);
  }
  return result;
}

}  // namespace

// The length is measured here, not by V8: V8 would decode a text of more
// bytes than its longest string and end the process when the result is too
// long.
v8::Local<v8::Value> toScript(v8::Isolate* isolate, const char* text) {
  if (text == nullptr) return v8::Undefined(isolate);
  return textToScript(isolate, text, std::strlen(text));
}

v8::Local<v8::Value> toScript(v8::Isolate* isolate, const std::string& text) {
  return textToScript(isolate, text.data(), text.size());
}

char* copyText(const char* text) {
  if (text == nullptr) return nullptr;
  size_t size = std::strlen(text) + 1;
  char* copy = new char[size];
  std::memcpy(copy, text, size);
  return copy;
}

void disownArgument(v8::Local<v8::Value> value) {
  if (value->IsObject()) {
    if (ProxyRecord* record = recordOf(value.As<v8::Object>())) convertRecord(record, nullptr, nullptr, kDisown);
  }
}

}  // namespace orva::binding
