// `classString` as callers hold it: every slot hands over to the plain class.
#ifndef ORVIX_CONTAINERS_STRING_OBJECT_H
#define ORVIX_CONTAINERS_STRING_OBJECT_H

#include "containers/class_string.h"
#include "frame/classes.h"
#include "frame/object.h"

namespace Orvix::component {

class StringObject final : public Object<StringObject, _classString, classString> {
 public:
  HRESULT ORVIX_CALL SetBufferSize(LONG newSize, VARIANT_BOOL* clearIt) noexcept override {
    return Do<&classString::SetBufferSize>(newSize, clearIt);
  }
  HRESULT ORVIX_CALL get_Value(BSTR* result) noexcept override { return Call<&classString::Value>(result); }
  HRESULT ORVIX_CALL put_Value(BSTR* newValue) noexcept override { return Do<&classString::SetValue>(newValue); }
  HRESULT ORVIX_CALL StrPtr(LONG* result) noexcept override { return Call<&classString::StrPtr>(result); }
  HRESULT ORVIX_CALL get_Length(LONG* result) noexcept override { return Call<&classString::Length>(result); }
  HRESULT ORVIX_CALL put_Length(LONG newValue) noexcept override { return Do<&classString::SetLength>(newValue); }
  HRESULT ORVIX_CALL Clear() noexcept override { return Do<&classString::Clear>(); }
  HRESULT ORVIX_CALL Copy(_classString** result) noexcept override { return Call<&classString::Copy>(result); }
  HRESULT ORVIX_CALL get_Left(LONG NumChars, _classString** result) noexcept override {
    return Call<&classString::Left>(result, NumChars);
  }
  HRESULT ORVIX_CALL put_Left(LONG NumChars, VARIANT* newValue) noexcept override {
    return Do<&classString::SetLeft>(NumChars, newValue);
  }
  HRESULT ORVIX_CALL putref_Left(LONG NumChars, _classString** newValue) noexcept override {
    return Do<&classString::SetLeftFrom>(NumChars, newValue);
  }
  HRESULT ORVIX_CALL get_Right(LONG NumChars, _classString** result) noexcept override {
    return Call<&classString::Right>(result, NumChars);
  }
  HRESULT ORVIX_CALL put_Right(LONG NumChars, VARIANT* newValue) noexcept override {
    return Do<&classString::SetRight>(NumChars, newValue);
  }
  HRESULT ORVIX_CALL putref_Right(LONG NumChars, _classString** newValue) noexcept override {
    return Do<&classString::SetRightFrom>(NumChars, newValue);
  }
  HRESULT ORVIX_CALL get_Mid(LONG StartPos, VARIANT* NumChars, _classString** result) noexcept override {
    return Call<&classString::Mid>(result, StartPos, NumChars);
  }
  HRESULT ORVIX_CALL put_Mid(LONG StartPos, VARIANT* NumChars, VARIANT* newValue) noexcept override {
    return Do<&classString::SetMid>(StartPos, NumChars, newValue);
  }
  HRESULT ORVIX_CALL putref_Mid(LONG StartPos, VARIANT* NumChars, _classString** newValue) noexcept override {
    return Do<&classString::SetMidFrom>(StartPos, NumChars, newValue);
  }
  HRESULT ORVIX_CALL Asc(SHORT* result) noexcept override { return Call<&classString::Asc>(result); }
  HRESULT ORVIX_CALL get_Char(LONG index, BYTE* result) noexcept override {
    return Call<&classString::Char>(result, index);
  }
  HRESULT ORVIX_CALL put_Char(LONG index, BYTE newValue) noexcept override {
    return Do<&classString::SetChar>(index, newValue);
  }
  HRESULT ORVIX_CALL Instr(VARIANT* search, LONG* StartPos, LONG* result) noexcept override {
    return Call<&classString::Instr>(result, search, StartPos);
  }
  HRESULT ORVIX_CALL UCase(_classString** result) noexcept override { return Call<&classString::UCase>(result); }
  HRESULT ORVIX_CALL LCase(_classString** result) noexcept override { return Call<&classString::LCase>(result); }
  HRESULT ORVIX_CALL ReverseStr(_classString** result) noexcept override {
    return Call<&classString::ReverseStr>(result);
  }
  HRESULT ORVIX_CALL Append(VARIANT* arg, _classString** result) noexcept override {
    return Call<&classString::Append>(result, arg);
  }
  HRESULT ORVIX_CALL Find(BSTR* search, LONG* StartPos, LONG* result) noexcept override {
    return Call<&classString::Find>(result, search, StartPos);
  }
  HRESULT ORVIX_CALL WriteToFile(SHORT FileNum, VARIANT_BOOL* PrefixLength) noexcept override {
    return Do<&classString::WriteToFile>(FileNum, PrefixLength);
  }
  HRESULT ORVIX_CALL ReadFromFile(SHORT FileNum, VARIANT_BOOL* PrefixLength) noexcept override {
    return Do<&classString::ReadFromFile>(FileNum, PrefixLength);
  }
  HRESULT ORVIX_CALL TrimToNull(LONG* result) noexcept override { return Call<&classString::TrimToNull>(result); }
  HRESULT ORVIX_CALL GetElement(LONG lIndex, BSTR sSeparator, BSTR* result) noexcept override {
    return Call<&classString::GetElement>(result, lIndex, sSeparator);
  }
  HRESULT ORVIX_CALL LengthList(BSTR sSeparator, LONG* result) noexcept override {
    return Call<&classString::LengthList>(result, sSeparator);
  }
};

}  // namespace Orvix::component

#endif
