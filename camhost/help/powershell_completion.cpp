// SPDX-License-Identifier: MIT
#include "camhost/base/texts.h"
#include "camhost/help/completion.h"

namespace camhost {

namespace {

constexpr const char* powershellHead =
    R"ps1(# Completion of camhost's command line for PowerShell, made by "camhost completion powershell".
# In this session:  camhost completion powershell | Out-String | Invoke-Expression
# In every one:     the same line in the file that $PROFILE names

Register-ArgumentCompleter -Native -CommandName 'camhost', 'camhost.exe' -ScriptBlock {
    param($wordToComplete, $commandAst, $cursorPosition)

    $commands = [ordered]@{
)ps1";

constexpr const char* powershellOptionsHead = R"ps1(    }
    # Command ('*' for all), names (none for a word by its place), what follows (words, or "@"
    # and a kind of thing; nothing for a switch), what it is.
    $options = @(
)ps1";

constexpr const char* powershellBody = R"ps1(    )

    $words = @($commandAst.CommandElements | Select-Object -Skip 1 |
        Where-Object { $_.Extent.EndOffset -lt $cursorPosition } | ForEach-Object {
            if ($_ -is [System.Management.Automation.Language.StringConstantExpressionAst]) { $_.Value }
            else { $_.Extent.Text }
        })
    $command = ''
    $takes = ''
    $given = @()
    for ($i = 0; $i -lt $words.Count; $i++) {
        $option = $options | Where-Object {
            $_.Names -ccontains $words[$i] -and ($_.Command -eq '*' -or $_.Command -ceq $command)
        } | Select-Object -First 1
        if ($option -and $option.Takes) {
            if ($i + 1 -eq $words.Count) {
                $takes = $option.Takes
            } elseif ('--adapter', '--rig', '--camera', '-c' -ccontains $words[$i]) {
                $given += $words[$i], $words[$i + 1]
            }
            $i++
        } elseif (-not $command -and -not $words[$i].StartsWith('-')) {
            $command = $words[$i]
        }
    }

    $typed = $wordToComplete.Trim("'", '"')
    if (-not $takes -and $typed.StartsWith('-')) {
        foreach ($option in $options | Where-Object { $_.Command -eq '*' -or $_.Command -ceq $command }) {
            foreach ($name in $option.Names | Where-Object { $_.StartsWith($typed) }) {
                [System.Management.Automation.CompletionResult]::new($name, $name, 'ParameterName', $option.What)
            }
        }
        return
    }
    if (-not $takes -and -not $command) {
        foreach ($name in $commands.Keys | Where-Object { $_.StartsWith($typed) }) {
            [System.Management.Automation.CompletionResult]::new($name, $name, 'Command', $commands[$name])
        }
        return
    }
    if (-not $takes) {
        $takes = ($options | Where-Object { $_.Command -ceq $command -and -not $_.Names } |
            Select-Object -First 1).Takes
    }

    $program = $commandAst.CommandElements[0].Extent.Text.Trim("'", '"')
    $ending = ''
    $things = @()
    switch -Exact ($takes) {
        '' { return }
        '@none' { return }
        '@file' { return }  # PowerShell completes names of files itself
        '@camera' {
            $things = & $program @given -q list 2>$null | Select-Object -Skip 1 |
                ForEach-Object { ($_ -split '\s+')[1] } | Where-Object { $_ -ne 'n/a' }
        }
        { $_ -in '@setting', '@assignment', '@action' } {
            $things = & $program @given -q props --plain 2>$null | ForEach-Object {
                $key, $type, $value, $low, $high, $flags = $_ -split "`t"
                $fits = ($type -eq 'command') -eq ($takes -eq '@action')
                if ($fits -and -not ($takes -eq '@assignment' -and $flags -match 'read-only')) { $key }
            }
        }
        default { $things = $takes -split ' ' }
    }
    if ($takes -eq '@assignment') { $ending = '=' }
    foreach ($thing in $things | Where-Object { $_ -like "$([WildcardPattern]::Escape($typed))*" }) {
        $text = "$thing$ending"
        # A quote is left open where a value is still to come.
        if ($text -match '[^\w.:=+-]') { $text = "'" + $text + $(if ($ending) { '' } else { "'" }) }
        [System.Management.Automation.CompletionResult]::new($text, $thing, 'ParameterValue', $thing)
    }
}
)ps1";

std::string quoted(const std::string& text) {
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? "''" : std::string(1, c);
    }
    return result + "'";
}

std::string optionLines(const std::string& command, const std::vector<OptionOutline>& options) {
    std::string lines;
    for (const OptionOutline& option : options) {
        std::vector<std::string> names;
        for (const std::string& name : option.names) {
            names.push_back(quoted(name));
        }
        lines += "        [pscustomobject]@{ Command = " + quoted(command) + "; Names = @(" +
                 join(names, ", ") +
                 "); Takes = " + quoted(option.value.empty() ? "" : completedBy(option.value)) +
                 "; What = " + quoted(option.what) + " }\n";
    }
    return lines;
}

}  // namespace

std::string powershellCompletion(const ProgramOutline& program) {
    std::string commands;
    std::string options;
    for (const CommandOutline& command : program.commands) {
        commands += "        " + quoted(command.name) + " = " + quoted(command.what) + "\n";
        options += optionLines(command.name, command.options);
    }
    return powershellHead + commands + powershellOptionsHead + options +
           optionLines("*", program.options) + powershellBody;
}

}  // namespace camhost
