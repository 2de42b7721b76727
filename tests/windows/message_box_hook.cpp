// Linked into every Windows test program. kalvor.dll shows each error in a
// message box; here its import of user32's MessageBoxA is pointed at a
// function that first writes the line the Linux build writes,
// "kalvor: Error: <text>", to standard error, and then shows the real box
// (under a headless Wine it returns at once). The same tests thus read the
// messages on both systems, and here they also check the box's arguments.
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

using MessageBoxFn = int(WINAPI*)(HWND, LPCSTR, LPCSTR, UINT);
MessageBoxFn g_real_message_box = nullptr;

int WINAPI message_box_to_stderr(HWND owner, LPCSTR text, LPCSTR caption, UINT style) {
  if (!owner && caption && strcmp(caption, "Error") == 0 && style == (MB_OK | MB_ICONHAND))
    fprintf(stderr, "kalvor: Error: %s\n", text ? text : "(null)");
  else
    fprintf(stderr, "kalvor: message box with owner %p, caption \"%s\", style %u\n",
            static_cast<void*>(owner), caption ? caption : "(null)", style);
  fflush(stderr);
  return g_real_message_box(owner, text, caption, style);
}

// Finds MessageBoxA among kalvor.dll's imports from user32.dll and replaces
// its address in the import table.
bool redirect_message_box() {
  auto* base = reinterpret_cast<uint8_t*>(GetModuleHandleA("kalvor.dll"));
  if (!base) return false;
  auto* dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
  auto* nt = reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const IMAGE_DATA_DIRECTORY& imports = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  auto* library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
  for (; imports.VirtualAddress && library->Name; ++library) {
    if (_stricmp(reinterpret_cast<const char*>(base + library->Name), "user32.dll") != 0) continue;
    auto* name = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
    auto* slot = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
    for (; name->u1.AddressOfData; ++name, ++slot) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
      auto* by_name = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
      if (strcmp(reinterpret_cast<const char*>(by_name->Name), "MessageBoxA") != 0) continue;
      DWORD protection;
      if (!VirtualProtect(&slot->u1.Function, sizeof slot->u1.Function, PAGE_READWRITE, &protection))
        return false;
      g_real_message_box = reinterpret_cast<MessageBoxFn>(slot->u1.Function);
      slot->u1.Function = reinterpret_cast<ULONG_PTR>(&message_box_to_stderr);
      VirtualProtect(&slot->u1.Function, sizeof slot->u1.Function, protection, &protection);
      return true;
    }
  }
  return false;
}

// kalvor.dll is loaded with the program, before static initialisation.
[[maybe_unused]] const bool g_redirected = [] {
  bool done = redirect_message_box();
  if (!done) fprintf(stderr, "kalvor test: MessageBoxA of kalvor.dll not found; messages not shown\n");
  return done;
}();

}  // namespace
