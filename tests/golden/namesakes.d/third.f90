interface NORM
  function norm(x)
  end function
end interface norm
