# Ends a compiled help file with its own checksum, by which the program knows a damaged file before it reads it.
file(SHA256 ${HELP_FILE} checksum)
file(APPEND ${HELP_FILE} "SHA-256 ${checksum}\n")
