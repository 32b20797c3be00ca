# Writes the manual page from the program's own --help and --version, so the two never disagree.
#   cmake -DPROGRAM=<parallaxotron> -DOUTPUT=<parallaxotron.1> -P man_page.cmake
#
# The help text is laid out for a terminal: headings at the left margin ending in a colon
# ("Usage:", "Options:", "Exit codes:"), indented lists below them, paragraphs at the margin.
# Each heading becomes a section; the text keeps its own line breaks and columns (no filling), so
# the option table reads as it does under --help. The paragraphs after the synopsis become the
# description.

execute_process(COMMAND ${PROGRAM} --help OUTPUT_VARIABLE help RESULT_VARIABLE help_result)
execute_process(COMMAND ${PROGRAM} --version OUTPUT_VARIABLE version RESULT_VARIABLE version_result
                OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT help_result EQUAL 0 OR NOT version_result EQUAL 0 OR help STREQUAL "")
  message(FATAL_ERROR "${PROGRAM} --help / --version failed: ${help_result} ${version_result}")
endif()

# Roff: a backslash is written \e, a minus \- (so options copied from the page keep their
# hyphens), and a line must not begin with a control character.
function(roff_line text out)
  string(REPLACE "\\" "\\e" text "${text}")
  string(REPLACE "-" "\\-" text "${text}")
  if(text MATCHES "^[.']")
    set(text "\\&${text}")
  endif()
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

# One list entry a line: semicolons and square brackets would change how CMake splits the
# list, so they travel as placeholders.
string(REPLACE ";" "<semicolon>" help "${help}")
string(REPLACE "[" "<open>" help "${help}")
string(REPLACE "]" "<close>" help "${help}")
string(REGEX REPLACE "\n$" "" help "${help}")
string(REPLACE "\n" ";" lines "${help}")

set(page ".TH PARALLAXOTRON 1 \"\" \"${version}\" \"User Commands\"\n")
string(APPEND page ".SH NAME\n"
       "parallaxotron \\- turn still pictures into video by flying a camera over them\n")
set(section "")
set(blank FALSE)  # a blank line is written only before more text, never before a heading
foreach(line IN LISTS lines)
  string(REPLACE "<semicolon>" ";" line "${line}")
  string(REPLACE "<open>" "[" line "${line}")
  string(REPLACE "<close>" "]" line "${line}")
  if(line MATCHES "^([A-Za-z][A-Za-z ]*):$")
    string(TOUPPER "${CMAKE_MATCH_1}" heading)
    if(heading STREQUAL "USAGE")
      set(heading "SYNOPSIS")
    endif()
    if(NOT section STREQUAL "")
      string(APPEND page ".fi\n")
    endif()
    string(APPEND page ".SH ${heading}\n.nf\n")
    set(section "${heading}")
    set(blank FALSE)
  elseif(line STREQUAL "")
    set(blank TRUE)
  else()
    if(section STREQUAL "SYNOPSIS" AND line MATCHES "^[^ ]")
      string(APPEND page ".fi\n.SH DESCRIPTION\n.nf\n")
      set(section "DESCRIPTION")
      set(blank FALSE)
    endif()
    if(blank)
      string(APPEND page ".sp\n")
      set(blank FALSE)
    endif()
    roff_line("${line}" line)
    string(APPEND page "${line}\n")
  endif()
endforeach()
if(NOT section STREQUAL "")
  string(APPEND page ".fi\n")
endif()
string(APPEND page ".SH FILES\n.TP\n.I ~/.config/Parallaxotron\n"
       "the editor's remembered choices (under \\fB$XDG_CONFIG_HOME\\fR when it is set)\n")

file(WRITE ${OUTPUT} "${page}")
