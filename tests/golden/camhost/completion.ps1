# Completion of camhost's command line for PowerShell, made by "camhost completion powershell".
# In this session:  camhost completion powershell | Out-String | Invoke-Expression
# In every one:     the same line in the file that $PROFILE names

Register-ArgumentCompleter -Native -CommandName 'camhost', 'camhost.exe' -ScriptBlock {
    param($wordToComplete, $commandAst, $cursorPosition)

    $commands = [ordered]@{
        'list' = 'cameras'
        'get' = 'values'
        'set' = 'change them'
        'exec' = 'do'
        'save' = 'to C:\x'
        'shell' = '.hidden'
        'grab' = 'frames'
    }
    # Command ('*' for all), names (none for a word by its place), what follows (words, or "@"
    # and a kind of thing; nothing for a switch), what it is.
    $options = @(
        [pscustomobject]@{ Command = 'get'; Names = @(); Takes = '@setting'; What = 'keys' }
        [pscustomobject]@{ Command = 'get'; Names = @('--plain'); Takes = ''; What = 'with tabs' }
        [pscustomobject]@{ Command = 'set'; Names = @(); Takes = '@assignment'; What = 'assignments' }
        [pscustomobject]@{ Command = 'exec'; Names = @(); Takes = '@action'; What = 'what' }
        [pscustomobject]@{ Command = 'save'; Names = @(); Takes = '@file'; What = 'to write' }
        [pscustomobject]@{ Command = 'shell'; Names = @(); Takes = 'bash powershell'; What = 'which' }
        [pscustomobject]@{ Command = 'grab'; Names = @('-n', '--frames'); Takes = '@none'; What = 'how many' }
        [pscustomobject]@{ Command = 'grab'; Names = @('--on-loss'); Takes = 'wait fail'; What = 'at a loss' }
        [pscustomobject]@{ Command = 'grab'; Names = @(); Takes = '@none'; What = 'names' }
        [pscustomobject]@{ Command = '*'; Names = @('-h', '--help'); Takes = ''; What = 'this' }
        [pscustomobject]@{ Command = '*'; Names = @('--adapter'); Takes = '@file'; What = 'it''s the adapter' }
        [pscustomobject]@{ Command = '*'; Names = @('-c', '--camera'); Takes = '@camera'; What = 'which' }
        [pscustomobject]@{ Command = '*'; Names = @('--clock'); Takes = 'real fast'; What = 'how frames come' }
    )

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
