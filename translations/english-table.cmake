# Makes the English string table from the French one: the same keys, each with its English
# source text as its translation (lrelease uses the source of an unfinished id-based entry).
file(READ ${INPUT} _ts)
string(REGEX REPLACE "<translation[^>]*>[^<]*</translation>" "<translation type=\"unfinished\"></translation>" _ts "${_ts}")
string(REPLACE "language=\"fr_FR\"" "language=\"en_US\"" _ts "${_ts}")
file(WRITE ${OUTPUT} "${_ts}")
