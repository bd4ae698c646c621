# SPDX-License-Identifier: MIT
"""Zsh completion of a program: one file for a folder of $fpath."""
from reference.options import NEED_A_PROJECT, is_flag, kind, named, placeholder, positionals

ACTIONS = {"files": "_files", "folders": "_files -/", "nothing": " "}


def quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"


def described(text):
    """A description inside of brackets or before a colon."""
    return text.replace("\\", "\\\\").replace("[", "\\[").replace("]", "\\]").replace(":", "\\:")


def action(option, function):
    name = kind(option)
    if name == "choices":
        return "(" + " ".join(option["choices"]) + ")"
    if name in NEED_A_PROJECT:
        return f"_{function}_{name}"
    return ACTIONS[name]


def option_arguments(option, function):
    """What _arguments takes, one for each name of the option."""
    names = option["names"]
    value = "" if is_flag(option) else f":{described(placeholder(option))}:{action(option, function)}"
    excluded = "*" if option["repeatable"] else "(" + " ".join(names) + ")"
    return [quoted(f"{excluded}{name}[{described(option['help'])}]{value}") for name in names]


def positional_arguments(command, function):
    arguments = []
    for place, option in enumerate(positionals(command["options"]), start=1):
        number = "*" if option["repeatable"] else str(place)
        arguments.append(quoted(f"{number}:{described(option['positional'])}:{action(option, function)}"))
    return arguments


def call(arguments, indent, flags="-s"):
    lines = [f"{indent}_arguments {flags}"] + [f"{indent}  {argument}" for argument in arguments]
    return " \\\n".join(lines)


def all_options(options, function):
    return [argument for option in named(options) for argument in option_arguments(option, function)]


TAGS = """\
# Names of the project that the line names.
_{function}_tags() {{
  local -a names arguments
  local option
  for option in --project --config; do
    local place=${{whole[(I)$option]}} joined=${{whole[(R)$option=*]}}
    if [[ -n $joined ]]; then
      arguments+=($option "${{(Q)joined#*=}}")
    elif (( place > 0 && place < $#whole )); then
      arguments+=($option "${{(Q)whole[place + 1]}}")
    fi
  done
  (( $#arguments )) || return 1
  names=("${{(@f)$(_call_program tags ${{(q)service}} tag-names ${{(q)arguments}} -- ${{(q)${{(Q)PREFIX}}}})}}")
  names=(${{names:#}})
  compadd "$@" -a names
}}
_{function}_assignments() {{
  compset -P '*=' && return 1
  _{function}_tags -S = "$@"
}}
_{function}_either() {{
  local found=1
  _files "$@" && found=0
  _{function}_tags "$@" && found=0
  return found
}}
"""


def command_case(table, command, function):
    arguments = all_options(command["options"], function)
    shared = [option for option in named(table["options"]) if option["names"] not in (["-h", "--help"], ["--version"])]
    arguments += all_options(shared, function) + positional_arguments(command, function)
    return f"        {command['name']})\n" + call(arguments, "          ") + "\n          ;;"


def completion(table):
    function = table["name"].replace("-", "_")
    head = f"#compdef {table['name']}\n# Made by scripts/generate-reference.\n"
    commands = table["commands"]
    own = all_options(table["options"], function)
    if not commands:
        body = f"_{function}() {{\n" + call(own + positional_arguments(table, function), "  ") + "\n}\n"
        return "\n".join([head, body, f"_{function} \"$@\"\n"])
    listed = "\n".join(f"    {quoted(command['name'] + ':' + command['help'])}" for command in commands)
    cases = "\n".join(command_case(table, command, function) for command in commands)
    # With -C the state "command" sees words and CURRENT from the command's name on.
    body = f"""\
_{function}() {{
  local curcontext=$curcontext state line
  local -a commands whole=("${{words[@]}}")
  commands=(
{listed}
  )
{call(own + [quoted('1: :->name'), quoted('*:: :->command')], '  ', '-s -C -A "-*"')}
  case $state in
    name) _describe command commands ;;
    command)
      curcontext=${{curcontext%:*:*}}:{table['name']}-$words[1]:
      case $words[1] in
{cases}
      esac
      ;;
  esac
}}
"""
    with_tags = any(f"_{function}_{name}" in cases for name in NEED_A_PROJECT)
    tags = TAGS.format(function=function) if with_tags else ""
    return "\n".join(part for part in [head, tags, body, f"_{function} \"$@\"\n"] if part)
