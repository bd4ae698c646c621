# SPDX-License-Identifier: MIT
"""Bash completion of a program: one self-contained file."""
import shlex

from reference.options import NEED_A_PROJECT, kind, is_flag, named, positionals, visible_options

HEAD = """\
# bash completion of {name}. Made by scripts/generate-reference.

"""

# The words before the cursor, with --option=value as two words whatever bash breaks words at.
WORDS = """\
_{function}_words() {{
  local word joined=''
  words=()
  for word in "${{COMP_WORDS[@]:1:COMP_CWORD}}"; do
    if [[ $word == = ]]; then
      joined=1
    elif [[ -n $joined && ${{#words[@]}} -gt 0 && ${{words[-1]}} != --* ]]; then
      words[-1]+="=$word"
      joined=
    else
      words+=("$word")
      joined=
    fi
  done
  if [[ -n $joined ]]; then
    case ${{words[-1]}} in
      --*) words+=("") ;;
      *) words[-1]+="=" ;;
    esac
  fi
}}
"""

TAGS = """\
# Names of the project that the line names; they come as the program would get them, so they are quoted here unless the
# word is in quotes already.
_{function}_tags() {{
  local suffix=$1 current=$2 quote='' name word option='' arguments=()
  for word in "${{words[@]:0:${{#words[@]}}-1}}"; do
    case $option in
      --project | --config) arguments+=("$option" "$(_{function}_plain "$word")") ;;
    esac
    option=$word
  done
  [[ ${{#arguments[@]}} -gt 0 ]] || return
  case $current in
    [\\'\\"]*) quote=${{current:0:1}} ;;
  esac
  while IFS= read -r name; do
    [[ $quote == \\" ]] && name=${{name//\\"/\\\\\\"}}
    if [[ -z $quote ]]; then
      printf -v name %q "$name"
    fi
    COMPREPLY+=("$name$suffix")
  done < <("$program" tag-names "${{arguments[@]}}" -- "$(_{function}_plain "$current")" 2>/dev/null)
}}

# A word as the program would get it: without its quotes and backslashes, with ~/ as the home folder.
_{function}_plain() {{
  local word=$1
  case $word in
    \\'*) word=${{word#\\'}} word=${{word%\\'}} ;;
    *)
      [[ $word == \\"* ]] && word=${{word#\\"}} word=${{word%\\"}}
      # shellcheck disable=SC2162  # the backslashes are to go
      IFS= read word <<<"${{word/#~\\//$HOME/}}"
      ;;
  esac
  printf %s "$word"
}}
"""

MAIN = """\
_{function}() {{
  local words current previous command='' kind i position=0{program}
  COMPREPLY=()
  _{function}_words
  current=${{words[-1]}}
  for ((i = 0; i < ${{#words[@]}} - 1; ++i)); do
    previous=${{words[i]}}
    if [[ $previous == -* && $previous != -- ]]; then
      kind=$(_{function}_value "$command" "$previous")
      if [[ -n $kind ]]; then
        [[ $i -eq $((${{#words[@]}} - 2)) ]] && {{ _{function}_complete "$kind" "$current"; return; }}
        ((++i))
      fi
{is_command}    else
      ((++position))
    fi
  done
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(_{function}_options "$command")" -- "$current")
{complete_command}  else
    _{function}_complete "$(_{function}_positional "$command" "$position")" "$current"
  fi
}}

_{function}_complete() {{
  case $1 in
    files) compopt -o filenames 2>/dev/null; mapfile -t COMPREPLY < <(compgen -f -- "$2") ;;
    folders) compopt -o filenames 2>/dev/null; mapfile -t COMPREPLY < <(compgen -d -- "$2") ;;{tag_cases}
    words:*) mapfile -t COMPREPLY < <(compgen -W "${{1#words:}}" -- "$2") ;;
  esac
}}
"""

IS_COMMAND = """\
    elif [[ -z $command && " {commands} " == *" $previous "* ]]; then
      command=$previous
"""

COMPLETE_COMMAND = """\
  elif [[ -z $command ]]; then
    mapfile -t COMPREPLY < <(compgen -W "{commands}" -- "$current")
"""

TAG_CASES = """
    tags) _{function}_tags "" "$2" ;;
    either) mapfile -t COMPREPLY < <(compgen -f -- "$2"); _{function}_tags "" "$2" ;;
    assignments) [[ $2 == *=* ]] || {{ compopt -o nospace 2>/dev/null; _{function}_tags "=" "$2"; }} ;;"""


def kind_word(option):
    name = kind(option)
    return "words:" + " ".join(option["choices"]) if name == "choices" else name


def case(function, arguments, lines, otherwise=""):
    """A function that prints what belongs to its arguments."""
    body = [f"{function}() {{", f"  case {arguments} in"]
    body += [f"    {pattern}) echo {shlex.quote(word)} ;;" for pattern, word in lines]
    body += ["  esac", "}", ""] if not otherwise else [f"    *) echo {shlex.quote(otherwise)} ;;", "  esac", "}", ""]
    return "\n".join(body)


def value_lines(prefix, options):
    return [("|".join(f"{prefix}{name}" for name in option["names"]), kind_word(option))
            for option in options if not is_flag(option)]


def positional_lines(command):
    lines, name = [], command["name"]
    for place, option in enumerate(positionals(command["options"])):
        lines.append((f"{name}:{'*' if option['repeatable'] else place}", kind_word(option)))
    return lines


def option_words(table, command):
    return " ".join(name for option in visible_options(table, command) for name in option["names"])


def main_function(table, function, with_tags):
    commands = " ".join(command["name"] for command in table["commands"])
    return MAIN.format(function=function,
                       program=" program=${COMP_WORDS[0]}" if with_tags else "",
                       is_command=IS_COMMAND.format(commands=commands) if commands else "",
                       complete_command=COMPLETE_COMMAND.format(commands=commands) if commands else "",
                       tag_cases=TAG_CASES.format(function=function) if with_tags else "")


def completion(table):
    function = table["name"].replace("-", "_")
    commands = table["commands"]
    values = [line for command in commands for line in value_lines(f"{command['name']}:", named(command["options"]))]
    values += value_lines("*:", named(table["options"]))
    places = [line for command in commands for line in positional_lines(command)]
    places += [(pattern.replace(f"{table['name']}:", ":", 1), word) for pattern, word in positional_lines(table)]
    with_tags = any(word in NEED_A_PROJECT for _, word in values + places)
    parts = [HEAD.format(name=table["name"]),
             WORDS.format(function=function),
             case(f"_{function}_value", '"$1:$2"', values),
             case(f"_{function}_positional", '"$1:$2"', places),
             case(f"_{function}_options", '"$1"',
                  [(command["name"], option_words(table, command)) for command in commands],
                  option_words(table, table)),
             TAGS.format(function=function) if with_tags else "",
             main_function(table, function, with_tags),
             f"complete -F _{function} {table['name']}\n"]
    return "\n".join(part.rstrip("\n") + "\n" for part in parts if part)
