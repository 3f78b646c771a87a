"""Fails unless a program imports from libraries of Windows alone and runs from memory: check_program.py OBJDUMP PROGRAM"""
import re
import subprocess
import sys

OF_WINDOWS = set("advapi32 bcrypt comctl32 gdi32 kernel32 msvcrt ntdll ole32 oleaut32 shell32 shlwapi user32 version "
                 "ws2_32".split())
RUN_FROM_MEMORY = 0x400 | 0x800  # copied to the swap file from removable media and from the network

headers = subprocess.run([sys.argv[1], "-p", sys.argv[2]], check=True, capture_output=True, text=True).stdout
imports = {name.lower() for name in re.findall(r"DLL Name: (\S+)\.dll", headers, re.IGNORECASE)}
characteristics = int(re.search(r"^Characteristics 0x([0-9a-f]+)", headers, re.MULTILINE).group(1), 16)
print(*sorted(imports), hex(characteristics))
sys.exit("user32" not in imports or bool(imports - OF_WINDOWS) or characteristics & RUN_FROM_MEMORY != RUN_FROM_MEMORY)
