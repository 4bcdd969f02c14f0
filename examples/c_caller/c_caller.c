/* Shows a directory and copies the files that are shown, in C.
 *
 *   c_caller DIRECTORY [TARGET]
 *
 * A method is called through the table that its object points at; the result comes
 * last. By-reference arguments are pointers, and null where they are left out. Texts
 * are made by SysAllocStringLen and freed by SysFreeString, also those that a member
 * gives. */
#define _GNU_SOURCE /* dladdr */
#include <dlfcn.h>
#include <orvix/orvix.h>
#include <orvix/runtime.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* A failed call: its number, source and description, and the end of the program. */
static void Check(HRESULT result) {
  if (SUCCEEDED(result)) return;
  IErrorInfo* info = NULL;
  BSTR words = NULL;
  if (GetErrorInfo(0, &info) == S_OK) {
    info->lpVtbl->GetDescription(info, &words);
    info->lpVtbl->Release(info);
  }
  fprintf(stderr, "c_caller: error %d: ", OxErrorNumber(result));
  for (UINT i = 0; i < SysStringLen(words); ++i) fputc(words[i] < 0x80 ? (int)words[i] : '?', stderr);
  fputc('\n', stderr);
  exit(1);
}

/* An object of the registered component, else of the one that lies with the run-time. */
static void* Create(REFCLSID clsid, REFIID iid) {
  void* object = NULL;
  if (CoCreateInstance(clsid, NULL, CLSCTX_INPROC_SERVER, iid, &object) == S_OK) return object;
  const char* const places[] = {"/liborvix.so", "/orvix/liborvix.so"};
  void* component = NULL;
  Dl_info runtime;
  if (dladdr((const void*)(uintptr_t)&OxVersion, &runtime) != 0) {
    const char* const end = strrchr(runtime.dli_fname, '/');
    const int length = end == NULL ? 0 : (int)(end - runtime.dli_fname);
    for (size_t i = 0; component == NULL && i < 2; ++i) {
      char path[4096];
      snprintf(path, sizeof path, "%.*s%s", length, runtime.dli_fname, places[i]);
      component = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    }
  }
  if (component == NULL) {
    fprintf(stderr, "c_caller: the component is not there\n");
    exit(1);
  }
  HRESULT(ORVIX_CALL * get_class_object)(REFCLSID, REFIID, void**);
  void* const entry = dlsym(component, "DllGetClassObject");
  memcpy(&get_class_object, &entry, sizeof entry);
  IClassFactory* factory = NULL;
  Check(get_class_object(clsid, &IID_IClassFactory, (void**)&factory));
  Check(factory->lpVtbl->CreateInstance(factory, NULL, iid, &object));
  factory->lpVtbl->Release(factory);
  return object;
}

/* The name as members take it, with `behind` at its end; the caller frees it. */
static BSTR NameOf(const char* native, const char16_t* behind) {
  BSTR name = NULL;
  Check(OxPlatformName(native, &name));
  UINT units = 0;
  while (behind[units] != 0) ++units;
  const UINT length = SysStringLen(name);
  BSTR both = SysAllocStringLen(NULL, length + units);
  if (both == NULL) exit(1);
  memcpy(both, name, length * sizeof *name);
  memcpy(both + length, behind, units * sizeof *behind);
  SysFreeString(name);
  return both;
}

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    fprintf(stderr, "usage: c_caller DIRECTORY [TARGET]\n");
    return 2;
  }
  _classDirectory* const directory = Create(&CLSID_classDirectory, &IID__classDirectory);
  _CSHFileOp* const operation = Create(&CLSID_CSHFileOp, &IID__CSHFileOp);

  BSTR mask = NameOf(argv[1], u"\\*.*");
  LONG attribute = 0; /* plain files */
  Check(directory->lpVtbl->Init(directory, &mask, &attribute, NULL, NULL));
  SysFreeString(mask);

  LONG count = 0;
  Check(directory->lpVtbl->get_lNumFiles(directory, &count));
  for (LONG i = 1; i <= count; ++i) {
    FileType file;
    Check(directory->lpVtbl->File(directory, &i, &file));
    char* native = NULL;
    Check(OxNativeName(file.sCompleteFilename, &native));
    printf("%10d  %s\n", file.lSize, native);
    CoTaskMemFree(native);
    Check(operation->lpVtbl->AddSourceFile(operation, &file.sCompleteFilename));
    BSTR* const texts[] = {&file.sCompleteFilename, &file.sFile, &file.sPath, &file.sExtension};
    for (size_t t = 0; t < 4; ++t) SysFreeString(*texts[t]);
  }

  VARIANT_BOOL done = VARIANT_TRUE;
  if (argc == 3 && count > 0) {
    BSTR target = NameOf(argv[2], u"");
    VARIANT_BOOL silent = VARIANT_TRUE;
    Check(operation->lpVtbl->put_SilentMode(operation, &silent));
    Check(operation->lpVtbl->AddDestFile(operation, &target));
    Check(operation->lpVtbl->CopyFiles(operation, &done));
    SysFreeString(target);
    printf("%s\n", done ? "copied" : "not copied");
  }
  operation->lpVtbl->Release(operation);
  directory->lpVtbl->Release(directory);
  return done ? 0 : 1;
}
