function(orvelle_icons target)
endfunction()
