on sanitizeText(valueText)
  set oldDelimiters to AppleScript's text item delimiters
  set AppleScript's text item delimiters to (ASCII character 31)
  set valueParts to text items of valueText
  set AppleScript's text item delimiters to " "
  set valueText to valueParts as text
  set AppleScript's text item delimiters to linefeed
  set valueParts to text items of valueText
  set AppleScript's text item delimiters to " "
  set valueText to valueParts as text
  set AppleScript's text item delimiters to return
  set valueParts to text items of valueText
  set AppleScript's text item delimiters to " "
  set valueText to valueParts as text
  set AppleScript's text item delimiters to oldDelimiters
  return valueText
end sanitizeText

on limitedText(valueText, maxCharacters)
  set cleanedText to my sanitizeText(valueText)
  if (length of cleanedText) > maxCharacters then
    return text 1 thru maxCharacters of cleanedText
  end if
  return cleanedText
end limitedText

set cutoffDate to current date
set year of cutoffDate to 2026
set month of cutoffDate to 6
set day of cutoffDate to 3
set time of cutoffDate to 32400
set hasCutoff to true
set limitValue to 20
set subjectFilter to "quarterly report"
set senderFilter to ""
set hasSubjectFilter to true
set hasSenderFilter to false
set fieldSeparator to ASCII character 31
set collectedRows to {}
set seenMessageKeys to {}

with timeout of 12 seconds
tell application "Mail"
  if hasSubjectFilter or hasSenderFilter then
    set candidateMessages to {}
    repeat with accountItem in accounts
      repeat with mailboxItem in mailboxes of accountItem
        try
          if hasSubjectFilter then
            set mailboxMessages to messages of mailboxItem whose subject contains subjectFilter
          else
            set mailboxMessages to messages of mailboxItem whose sender contains senderFilter
          end if
          set candidateMessages to candidateMessages & mailboxMessages
        end try
      end repeat
    end repeat
  else
    set candidateMessages to messages of inbox
  end if
  repeat with candidateMessage in candidateMessages
    if (count of collectedRows) is greater than or equal to limitValue then exit repeat

    set shouldInclude to true
    try
      if hasCutoff and ((date received of candidateMessage) is less than or equal to cutoffDate) then set shouldInclude to false
    on error
      if hasCutoff then set shouldInclude to false
    end try

    if shouldInclude then
      set messageIsRead to false
      set messageIsFlagged to false
      set sourceIdValue to ""
      set messageIdValue to ""
      set mailboxValue to ""
      set accountValue to ""
      set senderValue to ""
      set subjectValue to ""
      set receivedAtValue to ""
      set previewValue to ""

      try
        set messageIsRead to read status of candidateMessage
      end try
      try
        set messageIsFlagged to flagged status of candidateMessage
      end try
      try
        set sourceIdValue to id of candidateMessage as text
      end try
      try
        set messageIdValue to message id of candidateMessage as text
      end try
      set shouldStore to true
      set dedupeKey to messageIdValue
      if dedupeKey is "" then set dedupeKey to sourceIdValue
      if dedupeKey is not "" then
        if seenMessageKeys contains dedupeKey then
          set shouldStore to false
        else
          set end of seenMessageKeys to dedupeKey
        end if
      end if
      try
        set mailboxValue to name of mailbox of candidateMessage as text
      end try
      try
        set accountValue to name of account of mailbox of candidateMessage as text
      end try
      try
        set senderValue to sender of candidateMessage as text
      end try
      try
        set subjectValue to subject of candidateMessage as text
      end try
      try
        set receivedAtValue to date received of candidateMessage as text
      end try
      try
        set previewValue to my limitedText(content of candidateMessage as text, 600)
      end try

      if shouldStore then
        set rowValue to my sanitizeText(sourceIdValue) & fieldSeparator & my sanitizeText(messageIdValue) & fieldSeparator & my sanitizeText(mailboxValue) & fieldSeparator & my sanitizeText(accountValue) & fieldSeparator & my sanitizeText(senderValue) & fieldSeparator & my sanitizeText(subjectValue) & fieldSeparator & my sanitizeText(receivedAtValue) & fieldSeparator & (messageIsRead as text) & fieldSeparator & (messageIsFlagged as text) & fieldSeparator & previewValue
        set end of collectedRows to rowValue
      end if
    end if
  end repeat
end tell
end timeout

return collectedRows