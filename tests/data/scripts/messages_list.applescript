on run argv
  set limitValue to item 1 of argv as integer
  tell application "Messages"
    set theChats to every chat
    set chatCount to count of theChats
    set output to ""
    repeat with i from 1 to chatCount
      if i > limitValue then exit repeat
      set c to item i of theChats
      set output to output & (id of c as string) & linefeed
    end repeat
    return output
  end tell
end run